# SPDX-License-Identifier: GPL-3.0-or-later
# A thin front for CMake: every target installs what is missing and builds first.

JOBS ?= $(shell nproc)
SOURCES := $(shell find src tests reliability bench tools -name '*.cpp' -o -name '*.h')
SCRIPTS = .ci/run $(shell git ls-files '*.sh')

.PHONY: build run demo test fuzz large-files monkey kill disks fat targets pulled full-size \
  memcheck sparse-card bench screenshots deb package-check windows windows-test windows-packages \
  lint tidy coverage format clean dependencies

build: dependencies
	@test -f build/build.ninja || cmake --preset release
	@cmake --build --preset release -j $(JOBS)

# Without a display there is no window to open: then the sample card shows what the program does.
run: build
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then build/tessaly; else \
	  echo "There is no display: preparing the sample card in demo/card instead."; \
	  tools/demo.sh; fi

demo: build
	@tools/demo.sh

test: build
	@ctest --preset release -j $(JOBS)
	@test -f build-asan/build.ninja || cmake --preset asan
	@cmake --build --preset asan -j $(JOBS)
	@ctest --preset asan -j $(JOBS)

# Any bytes for the readers: SECONDS=60 for each, or RUNS=2000000 each. (In a recipe's shell
# SECONDS is a variable of bash, hence the other name.)
fuzz:
	@tools/install-dependencies.sh clang
	@test -f build-fuzz/build.ninja || cmake --preset fuzz
	@cmake --build --preset fuzz -j $(JOBS)
	@SECONDS_EACH=$(or $(SECONDS),60) RUNS=$(RUNS) reliability/fuzz/run.sh

# What is no file, far too large, or claims to be, for the command line.
large-files: build
	@tools/install-dependencies.sh time
	@reliability/fuzz/large_files.sh

# Processes that save and write cards are killed RUNS times each.
kill: build
	@build/tessaly-kill --save $(or $(RUNS),1000)
	@build/tessaly-kill --card $(or $(RUNS),1000)

# Saves and card runs onto file systems that are full, too small or read-only; root only.
disks: build
	@tools/install-dependencies.sh strace
	@reliability/disks/run.sh

# Card runs on real FAT volumes.
FAT_KERNEL := $(if $(filter x86_64 i686,$(shell uname -m)),user-mode-linux kmod)
fat: build
	@tools/install-dependencies.sh dosfstools mtools $(FAT_KERNEL)
	@reliability/fat/run.sh

# Places that must never be erased, with real mounts, and cards that are really pulled out.
targets: build
	@reliability/targets/run.sh

pulled: build
	@tools/install-dependencies.sh strace dosfstools fuse fusefat
	@reliability/pulled/run.sh

bench: build
	@cmake --preset release -DTESSALY_BENCH=ON >/dev/null
	@cmake --build --preset release -j $(JOBS)
	@build/tessaly-bench
	@build/tessaly-window-bench
	@bench/startup.sh
	@bench/card_copy.sh

# Everything at full size: memory that is too much fails, times are a report.
full-size: build
	@tools/install-dependencies.sh time xvfb xauth
	@reliability/size/full_size.sh

# The tests of the core and the window under valgrind: some minutes.
memcheck: build
	@tools/install-dependencies.sh valgrind
	@reliability/size/memcheck.sh

# A card of GIB=16, really written below SIZE_FOLDER=build.
sparse-card: build
	@reliability/size/sparse_card.sh

# A random operator before the window: make monkey SEEDS=10 EVENTS=100000 FIRST_SEED=1
SEEDS ?= 10
EVENTS ?= 100000
FIRST_SEED ?= 1
monkey: dependencies
	@test -f build-asan/build.ninja || cmake --preset asan
	@cmake --build --preset asan -j $(JOBS) --target tessaly-monkey
	@build-asan/tessaly-monkey --seed $(FIRST_SEED) --seeds $(SEEDS) --events $(EVENTS)

screenshots: dependencies
	@tools/screenshots/run.sh

deb: build
	@tools/install-dependencies.sh dpkg-dev file
	@cmake --preset release >/dev/null
	@cmake --build --preset release -j $(JOBS)
	@rm -f build/packages/*.deb
	@cd build && cpack -G DEB >cpack.log || { cat cpack.log; exit 1; }
	@ls -l build/packages/*.deb

package-check: deb
	@packaging/debian/check_package.sh build/packages/tessaly_*.deb

windows:
	@packaging/windows/build.sh

windows-test:
	@packaging/windows/build.sh --test

windows-packages:
	@packaging/windows/build.sh --package

lint: dependencies
	@clang-format --dry-run -Werror $(SOURCES)
	@tools/install-dependencies.sh shellcheck
	@shellcheck -x -P SCRIPTDIR --severity=warning $(SCRIPTS)

# What clang-tidy says of the sources that changed: make tidy ALL=all looks at every one.
tidy: build
	@tools/install-dependencies.sh clang-tidy
	@tools/tidy.sh $(ALL)

# Which lines no test reaches: build-coverage/coverage/index.html
coverage: dependencies
	@tools/install-dependencies.sh gcovr
	@cmake --preset coverage
	@cmake --build --preset coverage -j $(JOBS)
	@ctest --preset coverage -j $(JOBS)
	@mkdir -p build-coverage/coverage
	@gcovr --root . --filter src/ --exclude-throw-branches --gcov-ignore-parse-errors \
	  --html-details build-coverage/coverage/index.html --print-summary build-coverage

format: dependencies
	@clang-format -i $(SOURCES)

clean:
	@rm -rf build build-debug build-asan build-coverage build-fuzz build-windows demo

dependencies:
	@tools/install-dependencies.sh
