// Copying what the user selected: text for editors and spreadsheets, a table for documents.

#include "QDBGrid.h"
#include "QDBGridPrivate.h"
#include "QDBGridProgress.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

namespace qdb {

namespace {

// A field of tab-separated text: quoted where its own tabs, line breaks or quotes would
// break the rows and columns apart.
QString textField(const QString &text)
{
    if (!text.contains(QLatin1Char('\t')) && !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'))
        && !text.startsWith(QLatin1Char('"')))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString htmlCell(const char *tag, const QString &text, TAlignment alignment)
{
    QString escaped = text.toHtmlEscaped();
    escaped.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    const char *align = alignment == taRightJustify ? " align=\"right\"" : alignment == taCenter ? " align=\"center\"" : "";
    return QStringLiteral("<%1%2>%3</%1>").arg(QLatin1String(tag), QLatin1String(align), escaped);
}

// Thrown through the walk when the user stops it.
struct CopyStopped
{
};

} // namespace

QMimeData *TQCustomDBGrid::CopyData()
{
    TDataSet *ds = DataSet();
    if (!DataLink()->Active() || !ds || ds->IsEmpty())
        return nullptr;
    const bool rows = GetRowsSelection() && SelectedRows().Count() > 0;
    const bool cols = GetColsSelection() && SelectedCols().Count() > 0;
    const bool wholeRow = !rows && !cols && d_->options.Contains(dgRowSelect);
    const TDataRowEnum rowRange = rows ? reSelectedRows : cols ? reAllRows : reCurrentRow;
    const TDataColEnum colRange = cols ? ceSelectedCols : rows || wholeRow ? ceAllCols : ceCurrentCol;

    // The columns in the order they show, whatever order they were selected in.
    QList<TQColumn *> order;
    const QList<TQColumn *> chosen = [&] {
        QList<TQColumn *> list;
        for (TQColumn *c : TQColRange(this, colRange))
            list << c;
        return list;
    }();
    for (TQColumn *c : ShowingColumns())
        if (chosen.contains(c))
            order << c;
    if (order.isEmpty())
        return nullptr;

    QStringList lines;
    QString html;
    QStringList row;
    int rowCount = 0;
    TQWalkProgress progress(this, QApplication::translate("qdb", "Copying..."),
                            rows ? SelectedRows().Count() : ds->RecordCountKnown() ? ds->RecordCount() : 0,
                            SearchProgressDelay);
    try {
        forEachCell(rowRange, colRange, [&](TQColumn *column, TForEachCellFlags flags) {
            if (flags.Contains(feFirstCol))
                row = QStringList(order.size(), QString());
            if (const qsizetype at = order.indexOf(column); at >= 0)
                row[at] = column->GetDisplayText();
            if (!flags.Contains(feLastCol))
                return;
            ++rowCount;
            QStringList fields;
            html += QLatin1String("<tr>");
            for (int i = 0; i < order.size(); ++i) {
                fields << textField(row[i]);
                html += htmlCell("td", row[i], order[i]->GetAlignment());
            }
            html += QLatin1String("</tr>\n");
            lines << fields.join(QLatin1Char('\t'));
            if (!progress.Step())
                throw CopyStopped();
        });
    } catch (const CopyStopped &) {
        return nullptr;
    }

    auto *mime = new QMimeData;
    if (rowCount == 1 && order.size() == 1) {
        mime->setText(row.first()); // one value: pasted as it stands
        return mime;
    }
    QStringList titles;
    QString head;
    for (TQColumn *c : order) {
        titles << textField(c->GetTitle()->GetCaption());
        head += htmlCell("th", c->GetTitle()->GetCaption(), c->GetTitle()->GetAlignment());
    }
    lines.prepend(titles.join(QLatin1Char('\t')));
    mime->setText(lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    mime->setHtml(QStringLiteral("<html><body><table border=\"1\" cellspacing=\"0\">\n<thead><tr>%1</tr></thead>\n"
                                 "<tbody>\n%2</tbody></table></body></html>")
                      .arg(head, html));
    return mime;
}

bool TQCustomDBGrid::CopyToClipboard()
{
    if (QMimeData *mime = CopyData()) {
        QApplication::clipboard()->setMimeData(mime);
        return true;
    }
    return false;
}

} // namespace qdb
