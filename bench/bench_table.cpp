// A chain-sized normal table under a full tick: 60 rows by 38 columns, five
// cells per row holding a small order button. One tick writes every cell that
// holds no button anew (texts, numbers with decimals, text and background colour keys), gives
// every button cell a new button, brings the table up to date and lets the
// event loop do its part (layout, deferred deletes, painting: the table is shown
// on the offscreen platform). Figures: time per tick, the share of each phase,
// and whether ten thousand ticks make widgets or resident memory grow.
#include "toolkit/cpushbutton.h"
#include "toolkit/cstandardtable.h"
#include "bench/widgetbench.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTableView>

#include <ctime>
#include <memory>

namespace {

constexpr int kRows = 60;
constexpr int kColumns = 38;
// Where the board keeps its order buttons: both sides of the strike and the
// ends, five cells per row.
constexpr int kButtonColumns[] = {1, 9, 18, 27, 36};

bool isButtonColumn(int column)
{
    for (int buttonColumn : kButtonColumns) {
        if (buttonColumn == column) {
            return true;
        }
    }
    return false;
}

// CPU time of this thread in milliseconds: the machine is shared, so phases
// are measured in CPU time; Google Benchmark reports wall and CPU of the whole tick.
double threadCpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// The cost of a tick, phase by phase, in CPU milliseconds.
struct CPhaseTimes {
    double writes = 0.0;   // cell writes
    double widgets = 0.0;  // making the new buttons and handing them to the table
    double update = 0.0;   // updateTable()
    double events = 0.0;   // posted events but painting: layout, show, deferred deletes
    double paint = 0.0;    // painting the window
};

// The top-level window; it measures its own painting (the update request that
// paints it and every child), so that the tick's cost is seen with and without.
class CTimedWindow : public QWidget {
public:
    double paintMs = 0.0;
    int paints = 0;

protected:
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::UpdateRequest) {
            return QWidget::event(event);
        }
        const double start = threadCpuMs();
        const bool done = QWidget::event(event);
        paintMs += threadCpuMs() - start;
        ++paints;
        return done;
    }
};

class CTableRig {
public:
    explicit CTableRig(int buttons = 5) : buttonsPerRow(buttons)
    {
        window.resize(1900, 1000);
        table = new WG::CStandardTable(1, &window);
        table->setGeometry(0, 0, 1900, 1000);
        table->setColumnCount(kColumns);
        for (int column = 0; column < kColumns; ++column) {
            table->setColumnHeader(column, QStringLiteral("列%1").arg(column));
            table->setColumnWidth(column, isButtonColumn(column) ? 52 : 48);
        }
        table->setRowCount(kRows);
        window.show();
        tick(0);
        QCoreApplication::processEvents();
    }

    // One tick; the phases are added to times when given.
    void tick(int n, CPhaseTimes* times = nullptr)
    {
        double start = threadCpuMs();
        const bool odd = (n & 1) != 0;
        const char* rise = "clr_global_rise";
        const char* fall = "clr_global_fall";
        for (int row = 0; row < kRows; ++row) {
            for (int column = 0; column < kColumns; ++column) {
                if (isButtonColumn(column)) {
                    continue;
                }
                // Values differ from the last tick's in every cell, so no write is skipped as unchanged.
                const double value = 3.0 + row * 0.05 + column * 0.001 + (n % 1000) * 0.0001;
                switch (column % 4) {
                case 0:
                    table->setItemText(row, column, QString::number(10000000 + row * 100 + (n % 97)), true);
                    break;
                case 1:
                    table->setItemDouble(row, column, value, 4, utils::FNF_NONE, true);
                    break;
                case 2:
                    table->setItemDouble(row, column, value * 1000.0, 2, utils::FNF_SEGMENTED, true);
                    break;
                default:
                    table->setItemInt(row, column, n * 7 + row, utils::FNF_SEGMENTED, true);
                    break;
                }
                table->setItemTextColorKey(row, column, ((row + column) & 1) == odd ? rise : fall, true);
                table->setItemBackgroundColorKey(row, column, odd ? "clr_table_background_selected" : "", true);
            }
        }
        double next = threadCpuMs();
        if (times != nullptr) {
            times->writes += next - start;
        }
        start = next;
        for (int row = 0; row < kRows; ++row) {
            for (int i = 0; i < buttonsPerRow; ++i) {
                // As the board makes them: parented to the table, a fixed size, colour keys.
                auto* button = new WG::CPushButton(QString(), row * 10 + i, 1, 1, 24, 21, 0, table);
                button->setText(i % 2 == 0 ? QStringLiteral("开") : QStringLiteral("平"));
                button->setHorizontalText(true);
                const QString key = QString::fromLatin1(odd ? rise : fall);
                button->setTextColorKey(key, key, key, key);
                table->setItemWidget(row, kButtonColumns[i], button, WG::AL_CENTER, true);
            }
        }
        next = threadCpuMs();
        if (times != nullptr) {
            times->widgets += next - start;
        }
        start = next;
        table->updateTable();
        next = threadCpuMs();
        if (times != nullptr) {
            times->update += next - start;
        }
        start = next;
        const double paintBefore = window.paintMs;
        QCoreApplication::processEvents();
        // The desk ticks from a timer inside the event loop, and deferred deletes
        // run when control returns there; a benchmark main has no running loop,
        // so it asks for them explicitly.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (times != nullptr) {
            const double painted = window.paintMs - paintBefore;
            times->paint += painted;
            times->events += threadCpuMs() - start - painted;
        }
    }

    // A tick of a few quotes: each rewrites one row's cells and gives its
    // button cells new buttons; the rows lie apart, as quotes come.
    void quoteTick(int n, int quotes, CPhaseTimes* times)
    {
        const double start = threadCpuMs();
        const double paintBefore = window.paintMs;
        const bool odd = (n & 1) != 0;
        for (int q = 0; q < quotes; ++q) {
            const int row = (n * 7 + q * 13) % kRows;
            for (int column = 0; column < kColumns; ++column) {
                if (!isButtonColumn(column)) {
                    table->setItemDouble(row, column, 3.0 + row * 0.05 + column * 0.001 + (n % 1000) * 0.0001, 4,
                                         utils::FNF_NONE, true);
                    table->setItemTextColorKey(row, column, odd ? "clr_global_rise" : "clr_global_fall", true);
                }
            }
            for (int i = 0; i < buttonsPerRow; ++i) {
                auto* button = new WG::CPushButton(QString(), row * 10 + i, 1, 1, 24, 21, 0, table);
                button->setText(i % 2 == 0 ? QStringLiteral("开") : QStringLiteral("平"));
                button->setHorizontalText(true);
                table->setItemWidget(row, kButtonColumns[i], button, WG::AL_CENTER, true);
            }
        }
        table->updateTable();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const double painted = window.paintMs - paintBefore;
        times->paint += painted;
        times->events += threadCpuMs() - start - painted;
    }

    CTimedWindow window;
    WG::CStandardTable* table = nullptr;
    int buttonsPerRow;
};

void reportPhases(benchmark::State& state, const CPhaseTimes& times, int ticks)
{
    const double n = ticks > 0 ? ticks : 1;
    state.counters["writesMs"] = times.writes / n;
    state.counters["widgetsMs"] = times.widgets / n;
    state.counters["updateMs"] = times.update / n;
    state.counters["eventsMs"] = times.events / n;
    state.counters["paintMs"] = times.paint / n;
    state.counters["noPaintMs"] = (times.writes + times.widgets + times.update + times.events) / n;
}

// A full tick, painting included (the event phase paints the shown table).
// The argument: item-widget cells per row (0 gives the cost of the cells alone).
void BM_TableTick(benchmark::State& state)
{
    CTableRig rig(static_cast<int>(state.range(0)));
    CPhaseTimes times;
    int n = 1;
    for (auto _ : state) {
        rig.tick(n++, &times);
    }
    reportPhases(state, times, n - 1);
    state.counters["cells"] = kRows * kColumns;
    state.counters["widgetsReplaced"] = kRows * rig.buttonsPerRow;
    state.counters["liveWidgets"] = QApplication::allWidgets().size();
}
BENCHMARK(BM_TableTick)->Arg(5)->Arg(0)->Unit(benchmark::kMillisecond)->MinTime(3.0);

// What a tick of a few quotes costs, painting included: the table repaints the
// rows they changed. The argument: quotes (rows) in the tick. noPaintMs and
// paintMs split it; the other phase counters stay at zero here.
void BM_TableQuoteTick(benchmark::State& state)
{
    CTableRig rig;
    CPhaseTimes times;
    int n = 1;
    for (auto _ : state) {
        rig.quoteTick(n++, static_cast<int>(state.range(0)), &times);
    }
    reportPhases(state, times, n - 1);
}
BENCHMARK(BM_TableQuoteTick)->Arg(1)->Arg(5)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// The same tick with the table hidden: the cost without painting, for reference.
void BM_TableTickUnshown(benchmark::State& state)
{
    CTableRig rig;
    rig.window.hide();
    QCoreApplication::processEvents();
    CPhaseTimes times;
    int n = 1;
    for (auto _ : state) {
        rig.tick(n++, &times);
    }
    reportPhases(state, times, n - 1);
}
BENCHMARK(BM_TableTickUnshown)->Unit(benchmark::kMillisecond)->MinTime(3.0);

// Ten thousand full ticks: live widgets and resident memory after the first
// thousand and at the end; they must not grow.
void BM_TenThousandTicks(benchmark::State& state)
{
    CTableRig rig;
    CPhaseTimes times;
    long rss1000 = 0;
    int widgets1000 = 0;
    for (auto _ : state) {
        for (int n = 1; n <= 10000; ++n) {
            rig.tick(n, &times);
            if (n == 1000) {
                rss1000 = widgetbench::statusKb("VmRSS");
                widgets1000 = QApplication::allWidgets().size();
            }
        }
    }
    reportPhases(state, times, 10000);
    state.counters["rssAt1000Kb"] = static_cast<double>(rss1000);
    state.counters["rssAt10000Kb"] = static_cast<double>(widgetbench::statusKb("VmRSS"));
    state.counters["peakRssKb"] = static_cast<double>(widgetbench::statusKb("VmHWM"));
    state.counters["widgetsAt1000"] = widgets1000;
    state.counters["widgetsAt10000"] = QApplication::allWidgets().size();
}
BENCHMARK(BM_TenThousandTicks)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

int main(int argc, char** argv) { return widgetbench::run(argc, argv); }
