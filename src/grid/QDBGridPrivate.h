#pragma once

// The state of the data grid, shared by the files that implement it.

#include "QDBGrid.h"
#include "QDBGridTotals.h"

#include "platform/rtl/Dialogs.h"
#include "platform/rtl/Exceptions.h"

#include <QFontMetrics>
#include <QHash>
#include <QPainter>
#include <QPointer>

#include <memory>

namespace qdb {

// The one-line forms of cell texts in one font: what fits a width, or its elided form.
// Shaping text dominates painting, and a grid repaints the same texts again and again.
class TextFitCache
{
public:
    QString Fit(const QFontMetrics &fm, const QFont &font, const QString &text, int width);

private:
    QFont font_;
    QHash<QPair<QString, int>, QString> fitted_;
};

struct TQCustomDBGrid::Private
{
    std::unique_ptr<TQGridDataLink> link;
    TQDBGridTotals *totals = nullptr; // a child of the grid
    TQDBGridFilter *filter = nullptr; // a child of the grid
    // Where the titles' filter buttons were last painted, for clicks to find them.
    QList<QPair<QPointer<TQColumn>, QRect>> filterButtons;
    QPointer<QObject> filterList; // the value list open under a title
    TQDBGridSearch *search = nullptr; // a child of the grid
    QPointer<TQDBGridSearchPanel> searchPanel;
    bool searchStopped = false; // the user stopped the last walk of a search
    // The application's filter, kept while the grid's is installed.
    QString savedFilter;
    bool savedFiltered = false;
    TFilterRecordEvent savedFilterRecord;
    bool destroying = false;
    TQDBGridColumns *columns = nullptr;
    TQGridStyle *style = nullptr;
    TQDBGridOptions options{dgEditing, dgTitles, dgIndicator, dgColumnResize, dgColLines, dgRowLines, dgTabs,
                            dgConfirmDelete, dgCancelOnExit, dgTitleClick, dgMarkerAutoToggle};
    TQDBGridOptionsEx optionsEx{dgBlankRow,         dgAutoUpdateTotals, dgDelayUpdateTotals,
                                dgCalcWholeDataSet, dgCalcSelectedRows, dgAutoAscendOrder};
    TQDBGridOptionsExt optionsExt;
    QFont titleFont;
    bool titleFontAssigned = false;
    bool columnNesting = true;
    int defaultWidthMin = -1;
    int defaultWidthMax = -1;
    int fitWidthMax = 0;
    QString keyFields;
    int layoutLock = 0;
    int updateLock = 0;
    int cancelling = 0;
    int positionLock = 0;
    TBookmark savedBookmark;
    int savedActiveRecord = 0; // the saved record's row in the data set's window
    // The bottom band: the blank filler row, then header, values and footer totals rows.
    int blankRows = 1;
    int headerRows = 0;
    int valueRows = 0;
    int fieldRows = 0; // the totals data link's records, with dgTotalFields
    int footerRows = 0;
    int totalsCount = 1;
    int titleRows = 1;
    int seqCount = -1; // the forced sequence's record count; -1: the data set numbers
    int seqNumber = 0; // the current record's number in it
    int totalRowHeight = 0;
    int headerLineHeight = 0;
    QList<TQColumn *> showing;
    TGridImageList indicators;
    TGridImageList markers;
    TGridImageList checkBoxes;
    TGridImageList expandBoxes;
    int imagesPPI = 0;
    QFont headerFont;
    bool headerFontAssigned = false;
    int linesCount = 1;
    int linesCountMin = 1;
    int linesCountMax = 0;
    int titleLinesCount = 1;
    int headerLinesCount = 1;
    int indicatorWidth = 0;
    int fixedCols = 0;
    int stretchWidthMin = -1;
    int stretchWidthMax = -1;
    int stretchRunning = 0;
    int stretchBaseSum = 0;
    int stretchWidthLeft = 0;
    TColor color = clWindow;
    TColor fixedColor = clBtnFace;
    TColor dataColLineColor = clDefault;
    TColor dataRowLineColor = clDefault;
    TColor editorColor = clDefault;
    TColor highlightText = clDefault;
    TColor stripeColor = clDefault;
    TColor selectionColor = clDefault;
    TColor selectCellColor = clDefault;
    TColor selectRowColor = clDefault;
    TGridDrawingOptions drawingOptions{gdoHighlightText, gdoDataColLines, gdoDataRowLines, gdoSelectedCell,
                                       gdoSelectedRow, gdoMultiSelected, gdoTotalSelected};
    TFixedStyle fixedStyle = fsDefault;
    TFocusRect focusRect = frAuto;
    TMarkerStyle markerStyle = msAuto;
    TMarkerTransparent markerTransparent = mtAuto;
    std::unique_ptr<TQBookmarkList> selectedRows;
    std::unique_ptr<TQColumnList> selectedCols;
    TMultiSelection multiSelect = msRows;
    TMultiSelections multiSelectOptions{msRows};
    int selectLock = 0;
    bool selectChanged = false;
    TSelectAction lastSelectAction = saSelect;
    TBookmark selectionAnchor;
    // The grid-made columns' widths and visibility, which live in the fields, kept while the
    // data set is closed so that the same fields reopened (a new ORDER BY) get them back.
    struct KeptField
    {
        QString name;
        int displayWidth;
        bool visible;
    };
    QPointer<TDataSet> keptFieldsOf;
    QList<KeptField> keptFields;
    QHash<QString, QList<Variant>> savedSelections;
    QPointer<TQCustomDBGrid> master;
    QList<QPointer<TQCustomDBGrid>> slaves;
    TImeMode imeMode = imDontCare;
    QString imeName;
    bool settingActive = false; // the grid follows the data set, it does not move it
    bool updatingScrollBar = false;
    bool countQueued = false; // the scroll bar waits for the data set's count
    bool readOnly = false;
    // The data set and version whose count the user cancelled: not asked for again.
    QPointer<TDataSet> uncounted;
    quint64 uncountedVersion = 0;
    int savingColumns = 0;
    int loadingColumns = 0;
    int loading = 0; // reading from a stream
    QString orderFields; // the order text last stored
    QString orderBefore; // the order when the outermost order update began
    int orderLock = 0;
    QString detailFields;
    bool stretchMode = false;
    int wheelScrollRows = 0;
    // What the user typed into the cell editor and the field has not yet taken.
    QString editText;
    int editColumn = -1;
    int typing = 0;
    bool dropDownInProgress = false;
    TQDBGridSettings *settings = nullptr; // a child of the grid
    QByteArray defaultColumns; // the columns' stream as the data first came
    bool layoutLoaded = false; // the settings loaded the layout as the data came: saved as it goes
    TextFitCache textFit;
};

// Points the link at another record of its window for as long as it lives.
class ActiveRecordScope
{
public:
    ActiveRecordScope(TDataLink &link, int record) : link_(link), saved_(link.ActiveRecord())
    {
        link_.SetActiveRecord(record);
    }
    ~ActiveRecordScope() { link_.SetActiveRecord(saved_); }
    ActiveRecordScope(const ActiveRecordScope &) = delete;
    ActiveRecordScope &operator=(const ActiveRecordScope &) = delete;

private:
    TDataLink &link_;
    int saved_;
};

// The current record (by key fields) and, when asked, the selected rows of a grid, kept
// through a change that reorders or reloads its data set: read before, found again after.
// Key fields the data set does not have keep nothing.
class KeptPlace
{
public:
    KeptPlace(TQCustomDBGrid *grid, const QString &keyFields, bool keepSelection);
    bool Keys() const { return keys_; }
    // Selects the kept rows again and goes to the kept record.
    void Restore();

private:
    TQCustomDBGrid *grid_;
    QString keyFields_;
    bool keys_ = false;
    bool selection_ = false;
    Variant key_;
};

// Text and alignment helpers shared by the cell painters.
Qt::Alignment HorizontalAlignment(TAlignment a, bool rightToLeft);
Qt::Alignment VerticalAlignment(TVAlignment a);
// Draws text in a cell: wrapped, or on one line ending in an ellipsis when it does not fit.
void DrawCellText(QPainter &painter, const QRect &rect, const QString &text, Qt::Alignment alignment, bool wrap,
                  TextFitCache *cache = nullptr);

// An error of the data set (a refused post, a sort it cannot do) is told to the user; the
// input does nothing. No exception leaves an event handler.
template <typename F>
void showingErrors(F &&action)
{
    try {
        action();
    } catch (const EAbort &) {
    } catch (const EReadCancelled &) {
    } catch (const Exception &e) {
        MessageDlg(e.Message(), mtError, {mbOK});
    }
}

} // namespace qdb
