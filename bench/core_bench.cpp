// SPDX-License-Identifier: GPL-3.0-or-later
// How long the core takes, each task at the size that is promised and at half or twice that. At the
// end the promises are set against what was measured.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "card/card_checks.h"
#include "image/config_image.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "model/music_lists.h"
#include "platform/local_file_system.h"
#include "promises.h"
#include "sample_project.h"

using namespace tessaly;

namespace {

Project speechProject(int titles, int languages) {
    Project project;
    for (int language = 0; language < languages; ++language)
        project.lstLangs.append(QString("Lang %1").arg(language));
    for (int title = 0; title < titles; ++title) {
        project.lstSpTitles.append(QString("Title %1").arg(title));
        for (const QString& language : project.lstLangs) {
            TrackRecord record;
            record.kind = "speech";
            record.itemName = project.lstSpTitles.last();
            record.groupName = language;
            record.sourcePath = "C:\\speech\\" + language + "\\" + record.itemName.text() + ".mp3";
            project.TrackTable.append(record);
        }
    }
    return project;
}

// Answers every size at once, so that only the checks themselves are timed.
class InstantFiles : public LocalFileSystem {
 public:
    std::optional<FileStamp> stamp(const QString&) const override { return FileStamp{1000, 0}; }
};

class InstantDrives : public LocalDrives {
 public:
    qint64 totalBytes(const QString&) const override { return qint64(1) << 40; }
};

// A folder of small files that lives as long as the program.
class SourceFolder {
 public:
    explicit SourceFolder(int count) {
        for (int i = 0; i < count; ++i) {
            QFile file(QString("%1/%2.mp3").arg(folder_.path()).arg(i));
            if (file.open(QIODevice::WriteOnly))
                file.write("x");
        }
    }
    QString path() const { return folder_.path(); }

 private:
    QTemporaryDir folder_;
};

void image(benchmark::State& state) {
    Project project = musicProject(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(BuildConfigImage(project, 1));
}
BENCHMARK(image)->Arg(1500)->Arg(3000);

void hex(benchmark::State& state) {
    const QByteArray bytes(state.range(0), '\x5A');
    for (auto _ : state)
        benchmark::DoNotOptimize(EncodeImageAsHex(bytes));
}
BENCHMARK(hex)->Arg(32768)->Arg(65536);

void writeProject(benchmark::State& state) {
    const Project project = musicProject(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(encodeProject(project));
}
BENCHMARK(writeProject)->Arg(9995)->Arg(19990);

void readProjectBytes(benchmark::State& state) {
    const QByteArray bytes = encodeProject(musicProject(int(state.range(0))));
    for (auto _ : state) {
        Project project;
        applyRecords(parseRecords(bytes).records, project);
        benchmark::DoNotOptimize(project);
    }
}
BENCHMARK(readProjectBytes)->Arg(9995)->Arg(19990);

void checks(benchmark::State& state) {
    const Project project = speechProject(int(state.range(0)), 16);
    const InstantFiles files;
    const InstantDrives drives;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            runCardChecks(project, measureSources(project, files), "E:\\", drives, 0));
}
BENCHMARK(checks)->Arg(300)->Arg(600)->Unit(benchmark::kNanosecond);

// A damaged file may bring any number of lists.
void manyLists(benchmark::State& state) {
    Project made;
    UniqueNames lists;
    for (int i = 0; i < state.range(0); ++i) {
        addMusicList(made, QString("List %1").arg(i), lists);
        UniqueNames tracks;
        TrackRecord record;
        record.kind = "music";
        record.itemName = addMusicTrack(made, "Track", tracks);
        record.groupName = made.lstMuList.last();
        record.sourcePath = QString("C:\\Music\\%1.mp3").arg(i);
        made.TrackTable.append(record);
    }
    const QByteArray bytes = encodeProject(made);
    const InstantFiles files;
    const InstantDrives drives;
    for (auto _ : state) {
        Project project;
        applyRecords(parseRecords(bytes).records, project);
        benchmark::DoNotOptimize(
            runCardChecks(project, measureSources(project, files), "E:\\", drives, 0));
    }
}
BENCHMARK(manyLists)->Arg(40'000)->Arg(80'000);

const SourceFolder& sources() {
    static const SourceFolder folder(9995);
    return folder;
}

void plainStat(benchmark::State& state) {
    const Project project = musicProject(int(state.range(0)), sources().path());
    std::vector<std::string> paths;
    for (const TrackRecord& record : project.TrackTable)
        paths.push_back(record.sourcePath.text().toStdString());
    for (auto _ : state) {
        qint64 sum = 0;
        for (const std::string& path : paths) {
            struct stat status {};
            if (::stat(path.c_str(), &status) == 0)
                sum += status.st_size;
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(plainStat)->Arg(9995);

void summary(benchmark::State& state) {
    const Project project = musicProject(int(state.range(0)), sources().path());
    const LocalFileSystem files;
    for (auto _ : state)
        benchmark::DoNotOptimize(updateSummary(project, files));
}
BENCHMARK(summary)->Arg(4997)->Arg(9995);

// Keeps the times of every run, and prints what they come to.
class KeepingReporter : public benchmark::ConsoleReporter {
 public:
    std::map<std::string, std::vector<double>> milliseconds;  // that passed
    std::map<std::string, std::vector<double>> processor;     // milliseconds of the processor

    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> aggregates;
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate) {
                aggregates.push_back(run);
                continue;
            }
            milliseconds[run.run_name.str()].push_back(run.GetAdjustedRealTime() / 1e6);
            processor[run.run_name.str()].push_back(run.GetAdjustedCPUTime() / 1e6);
        }
        ConsoleReporter::ReportRuns(aggregates);
    }

    // Of the processor's time, which other programs on the machine change least.
    std::vector<double> ratios(const std::string& of, const std::string& to) {
        std::vector<double> found;
        for (size_t i = 0; i < std::min(processor[of].size(), processor[to].size()); ++i)
            found.push_back(processor[of][i] / processor[to][i]);
        return found;
    }
};

}  // namespace

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=5";
    // In turn, so that a disturbance meets both sides of a ratio.
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.push_back(repetitions.data());
    arguments.push_back(interleaving.data());
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    KeepingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    auto& ms = reporter.milliseconds;
    Promises promises;
    std::printf(
        "\nLeast, median and most of five, in milliseconds or as a ratio of processor time:\n");
    promises.check("image of 3,000 tracks", ms["image/3000"], 10, "ms");
    promises.check("HEX of 64 KiB", ms["hex/65536"], 3, "ms");
    promises.check("project of 9,995 records, write", ms["writeProject/9995"], 40, "ms");
    promises.check("project of 9,995 records, read", ms["readProjectBytes/9995"], 40, "ms");
    promises.check("checks of 600 titles in 16 languages", ms["checks/600"], 30, "ms");
    promises.check("80,000 lists, read and checked", ms["manyLists/80000"], 2000, "ms");
    promises.check("summary of 9,995 files : one stat each",
                   reporter.ratios("summary/9995", "plainStat/9995"), 2, "x");
    promises.check("add the 9,995th track and its file", ms["addTrack/9995"], 20, "ms");
    promises.check("rename a list of 5,000", ms["renameList/5000"], 20, "ms");
    promises.check("9,995 missing files among 50,000", ms["findMissing/9995"], 5000, "ms");
    promises.check("import a folder of 9,000 : TagLib alone",
                   reporter.ratios("importFolderOf9000", "tagLibAlone"), 1.2, "x");
    promises.check("quick look at 9,000 files : reading them",
                   reporter.ratios("quickLooks", "readEnds"), 2, "x");
    promises.check("the same again : one stat each",
                   reporter.ratios("quickLooksAgain", "statAlone"), 1.3, "x");
    promises.check("decode a minute, 44.1 kHz stereo (200 x)", ms["decodeSeconds/60"], 300, "ms");
    const char* pairs[][2] = {{"image/1500", "image/3000"},
                              {"hex/32768", "hex/65536"},
                              {"writeProject/9995", "writeProject/19990"},
                              {"readProjectBytes/9995", "readProjectBytes/19990"},
                              {"checks/300", "checks/600"},
                              {"manyLists/40000", "manyLists/80000"},
                              {"decodeSeconds/60", "decodeSeconds/120"},
                              {"summary/4997", "summary/9995"}};
    // Twice the work misses the processor's caches more often; work that grows as a square takes 4.
    for (const auto& [once, twice] : pairs)
        promises.check(std::string("twice the work: ") + twice, reporter.ratios(twice, once), 3,
                       "x");
    return promises.exitCode();
}
