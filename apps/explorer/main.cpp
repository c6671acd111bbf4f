// The explorer: opens a database (the bundled sample by default, or an SQLite file or a
// postgresql:// address given on the command line) and shows its tables in a data grid.
//
//   explorer [DATABASE] [--table NAME] [--screenshot FILE]

#include "ExplorerWindow.h"

#include "platform/rtl/Exceptions.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

namespace {

// The sample database next to the build, or where the build made it.
QString sampleDatabase()
{
    const QDir app(QCoreApplication::applicationDirPath());
    for (const QString &candidate : {app.filePath(QStringLiteral("sample.db")), app.filePath(QStringLiteral("../../data/sample.db")),
                                     QStringLiteral(QDB_SAMPLE_DB)})
        if (QFileInfo::exists(candidate))
            return QFileInfo(candidate).absoluteFilePath();
    return QStringLiteral(QDB_SAMPLE_DB);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Explorer"));
    explorer::ExplorerWindow::InstallTranslations(); // the system's language
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate("explorer", "Browses the tables of a database in a data grid."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("database"),
                                 QCoreApplication::translate("explorer", "An SQLite file or a postgresql:// address (default: the sample database)."));
    const QCommandLineOption table(QStringLiteral("table"), QCoreApplication::translate("explorer", "The table to show first."),
                                   QStringLiteral("name"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QCoreApplication::translate("explorer", "Render the window to a PNG file and exit."),
                                        QStringLiteral("file"));
    parser.addOption(table);
    parser.addOption(screenshot);
    parser.process(app);

    const QString database = parser.positionalArguments().value(0, sampleDatabase());
    explorer::ExplorerWindow window;
    // Each table keeps its columns, order and filters between runs.
    window.SetLayoutFile(explorer::ExplorerWindow::DefaultLayoutFile());
    if (!parser.isSet(screenshot)) {
        // A database that does not open is told in the window, where File > Open takes another.
        window.show();
        window.TryOpenDatabase(database, parser.value(table));
        return app.exec();
    }
    try {
        window.OpenDatabase(database, parser.value(table));
    } catch (const qdb::Exception &e) {
        std::fprintf(stderr, "explorer: %s\n", qPrintable(e.Message()));
        return 1;
    }
    if (parser.isSet(table) && !window.Grid()->DataSet()->Active()) {
        std::fprintf(stderr, "explorer: the table %s cannot be shown\n", qPrintable(parser.value(table)));
        return 1;
    }
    window.show();
    QCoreApplication::processEvents();
    if (!window.grab().save(parser.value(screenshot), "PNG")) {
        std::fprintf(stderr, "explorer: cannot write %s\n", qPrintable(parser.value(screenshot)));
        return 1;
    }
    return 0;
}
