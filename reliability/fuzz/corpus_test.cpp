// Every file of the corpora goes to the function that it was made for.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "targets.h"

namespace tessaly::fuzz {

class Corpus : public testing::TestWithParam<Target> {};

TEST_P(Corpus, KeepsEveryPromise) {
    const Target target = GetParam();
    const QDir folder(QLatin1String(TESSALY_CORPUS "/") + QLatin1String(target.name));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    EXPECT_GT(names.size(), 10);
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_NO_THROW(target.run(file.readAll())) << name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(All, Corpus, testing::ValuesIn(Targets),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace tessaly::fuzz
