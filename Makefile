# A thin front for CMake: every target installs what is missing and builds first.

JOBS ?= $(shell nproc)
SOURCES := $(shell find src tests bench -name '*.cpp' -o -name '*.h')

.PHONY: build run demo test bench lint format clean dependencies

build: dependencies
	@test -f build/build.ninja || cmake --preset release
	@cmake --build --preset release -j $(JOBS)

run: demo

demo: build
	@tools/demo.sh

test: build
	@ctest --preset release -j $(JOBS)
	@test -f build-asan/build.ninja || cmake --preset asan
	@cmake --build --preset asan -j $(JOBS)
	@ctest --preset asan -j $(JOBS)

bench: build
	@build/tessaly-bench
	@bench/card_copy.sh

lint: dependencies
	@clang-format --dry-run -Werror $(SOURCES)

format: dependencies
	@clang-format -i $(SOURCES)

clean:
	@rm -rf build build-debug build-asan demo

dependencies:
	@tools/install-dependencies.sh
