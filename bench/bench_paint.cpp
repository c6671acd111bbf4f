// Repainting a 1280x800 data grid full of data (the sample database's customers: ten
// columns, about forty rows). Beside it, in the same run: the floor of drawing the same cell
// texts with QPainter into an image, and Qt's QTableView showing the same rows through
// QSqlTableModel.

#include "grid/QDBGrid.h"
#include "platform/sql/SQLConnection.h"
#include "platform/sql/SQLDataSet.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFileInfo>
#include <QHeaderView>
#include <QPainter>
#include <QSqlDatabase>
#include <QSqlTableModel>
#include <QTableView>

using namespace qdb;

namespace {

const QSize Size(1280, 800);

QString sampleDatabase()
{
    return QStringLiteral(QDB_SAMPLE_DB);
}

struct GridFixture
{
    TSQLConnection connection;
    TSQLTable table;
    TDataSource source;
    TQDBGrid grid;
    GridFixture()
    {
        connection.SetConnectionString(sampleDatabase());
        connection.Open();
        table.SetConnection(&connection);
        table.SetTableName(QStringLiteral("customers"));
        table.Open();
        source.SetDataSet(&table);
        grid.resize(Size);
        grid.SetDataSource(&source);
        grid.show();
        QApplication::processEvents();
    }
    ~GridFixture() { grid.SetDataSource(nullptr); }
    // The cells in view that hold data, with their texts.
    QList<QPair<QRect, QString>> cells() const
    {
        QList<QPair<QRect, QString>> out;
        for (int r = grid.FixedRows(); r < grid.FixedRows() + grid.DataLink()->RecordCount(); ++r)
            for (int c = grid.IndicatorOffset(); c < grid.ColCount(); ++c) {
                const QRect rect = grid.CellRect(c, r);
                if (!rect.isEmpty() && rect.right() < Size.width())
                    out.append({rect, grid.CellText(c, r)});
            }
        return out;
    }
};

void BM_Repaint_Grid(benchmark::State &state)
{
    GridFixture f;
    f.grid.ResetDrawCellCount();
    for (auto _ : state)
        f.grid.viewport()->repaint();
    state.counters["cells/paint"] = double(f.grid.DrawCellCount()) / double(state.iterations());
    state.counters["data cells"] = double(f.cells().size());
}
BENCHMARK(BM_Repaint_Grid)->Unit(benchmark::kMicrosecond)->MinTime(1.0);

void BM_Repaint_TextFloor(benchmark::State &state)
{
    QList<QPair<QRect, QString>> cells;
    QFont font;
    {
        GridFixture f;
        cells = f.cells();
        font = f.grid.font();
    }
    QImage image(Size, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter p(&image);
        p.fillRect(image.rect(), Qt::white);
        p.setFont(font);
        for (const auto &[rect, text] : cells)
            p.drawText(rect.adjusted(2, 0, -2, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
    }
    state.counters["data cells"] = double(cells.size());
}
BENCHMARK(BM_Repaint_TextFloor)->Unit(benchmark::kMicrosecond)->MinTime(1.0);

void BM_Repaint_QTableView(benchmark::State &state)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        db.setDatabaseName(sampleDatabase());
        db.open();
        QSqlTableModel model(nullptr, db);
        model.setTable(QStringLiteral("customers"));
        model.select();
        QTableView view;
        view.setModel(&model);
        view.verticalHeader()->setDefaultSectionSize(QFontMetrics(view.font()).height() + 6);
        view.resize(Size);
        view.show();
        QApplication::processEvents();
        for (auto _ : state)
            view.viewport()->repaint();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
}
BENCHMARK(BM_Repaint_QTableView)->Unit(benchmark::kMicrosecond)->MinTime(1.0);

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (!QFileInfo::exists(sampleDatabase())) {
        std::fprintf(stderr, "The sample database %s is missing: build the project first\n", qPrintable(sampleDatabase()));
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
