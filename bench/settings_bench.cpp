// What a preference costs: reading it, reading it as text, setting twenty in a row.
#include "app/app_settings.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

struct Fixture {
    QTemporaryDir folder;
    AppSettings settings{DataFolder{folder.path(), folder.path(), true}};
};

void readInt(benchmark::State& state) {
    const Fixture fixture;
    for (auto _ : state)
        benchmark::DoNotOptimize(fixture.settings.Volume());
}
BENCHMARK(readInt);

void readText(benchmark::State& state) {
    const Fixture fixture;
    for (auto _ : state)
        benchmark::DoNotOptimize(fixture.settings.RecPattern());
}
BENCHMARK(readText);

/// The peer: the toolkit's own reader of the same file.
void readIntByQSettings(benchmark::State& state) {
    const QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("x.ini")), QSettings::IniFormat);
    settings.setValue(QStringLiteral("Volume"), QStringLiteral("20"));
    for (auto _ : state)
        benchmark::DoNotOptimize(settings.value(QStringLiteral("Volume")).toInt());
}
BENCHMARK(readIntByQSettings);

void setTwenty(benchmark::State& state) {
    Fixture fixture;
    int n = 0;
    for (auto _ : state)
        for (int key = 0; key < 20; ++key)
            fixture.settings.setHotkey(key, QString::number(n++));
}
BENCHMARK(setTwenty);

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
