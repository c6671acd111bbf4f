#pragma once

// The grid's search: a text looked for in the displayed text of the showing columns, cell by
// cell, forwards or backwards; optionally the rows without it hidden.

#include "platform/rtl/Colors.h"
#include "platform/rtl/Set.h"

#include <QObject>

namespace qdb {

class TQCustomDBGrid;

namespace QDBSearchTypes {
Q_NAMESPACE
enum TQSearchMode { smFirst, smNext, smPrev, smLast };
Q_ENUM_NS(TQSearchMode)
enum TQSearchOption { soCaseSensitive, soWholeWords, soWrapAround, soSkipMessage, soCurrentCol, soFilterRows };
Q_ENUM_NS(TQSearchOption)
} // namespace QDBSearchTypes
using namespace QDBSearchTypes;

using TQSearchOptions = Set<TQSearchOption>;

// Where the text is found in a cell's text by the search's rule, counted from 1; 0 when it is
// not. Without soCaseSensitive both are compared in Unicode upper case; with soWholeWords
// only an occurrence between non-letters counts, and the search goes on after the end of
// one that is not.
int SearchTextPos(const QString &text, const QString &cellText, TQSearchOptions options);
// Ctrl: from the first; Shift: backwards; Alt: from the last; else forwards.
TQSearchMode ShiftStateToSearchMode(Qt::KeyboardModifiers shift);

// The grid's search, published as Search.
class TQDBGridSearch : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool Active READ GetActive WRITE SetActive)
    Q_PROPERTY(qint32 Color READ GetColor WRITE SetColor)
    Q_PROPERTY(bool Incremental READ GetIncremental WRITE SetIncremental)
    Q_PROPERTY(int ListWidth READ GetListWidth WRITE SetListWidth)
    Q_PROPERTY(qdb::TQSearchOptions Options READ GetOptions WRITE SetOptions)
    Q_PROPERTY(qint32 PanelColor READ GetPanelColor WRITE SetPanelColor)
    Q_PROPERTY(bool PanelOnTop READ GetPanelOnTop WRITE SetPanelOnTop)
    Q_PROPERTY(bool PanelVisible READ GetPanelVisible WRITE SetPanelVisible)
    Q_PROPERTY(bool Permanent READ GetPermanent WRITE SetPermanent)
    Q_PROPERTY(QString Text READ GetText WRITE SetText)
    Q_PROPERTY(qdb::TQSearchOptions VisibleOptions READ GetVisibleOptions WRITE SetVisibleOptions)
    Q_CLASSINFO("default:Active", "true")
    Q_CLASSINFO("default:Color", "clDefault")
    Q_CLASSINFO("default:Incremental", "false")
    Q_CLASSINFO("default:ListWidth", "104")
    Q_CLASSINFO("default:Options", "[]")
    Q_CLASSINFO("default:PanelColor", "clDefault")
    Q_CLASSINFO("default:PanelOnTop", "false")
    Q_CLASSINFO("default:PanelVisible", "false")
    Q_CLASSINFO("default:Permanent", "false")
    Q_CLASSINFO("default:VisibleOptions", "[soCaseSensitive,soWholeWords,soWrapAround,soCurrentCol,soFilterRows]")

public:
    explicit TQDBGridSearch(TQCustomDBGrid *grid);
    ~TQDBGridSearch() override;

    TQCustomDBGrid *Grid() const { return grid_; }

    bool GetActive() const { return active_; }
    void SetActive(bool on);
    TColor GetColor() const { return color_; }
    void SetColor(TColor color);
    bool GetIncremental() const { return incremental_; }
    void SetIncremental(bool on);
    int GetListWidth() const { return listWidth_; }
    void SetListWidth(int width);
    TQSearchOptions GetOptions() const { return options_; }
    // Re-filters when the row filter is switched, or changes what it matches.
    void SetOptions(TQSearchOptions options);
    TColor GetPanelColor() const { return panelColor_; }
    void SetPanelColor(TColor color);
    bool GetPanelOnTop() const { return panelOnTop_; }
    void SetPanelOnTop(bool on);
    // Whether the panel is shown; setting it shows or closes the panel.
    bool GetPanelVisible() const;
    void SetPanelVisible(bool on);
    bool GetPermanent() const { return permanent_; }
    void SetPermanent(bool on);
    QString GetText() const { return text_; }
    // Re-filters with soFilterRows.
    void SetText(const QString &text);
    TQSearchOptions GetVisibleOptions() const { return visibleOptions_; }
    void SetVisibleOptions(TQSearchOptions options);

    void SwitchOptions(TQSearchOptions options, bool on);
    void SwitchVisibleOptions(TQSearchOptions options, bool on);

    // Rows without the text are hidden: there is a text and soFilterRows.
    bool GetFilterActive() const { return !text_.isEmpty() && options_.Contains(soFilterRows); }
    // Whether the data set's current record shows the text where the row filter looks.
    bool MatchesRecord() const;

private:
    void refreshGrid();

    TQCustomDBGrid *grid_;
    bool active_ = true;
    TColor color_ = clDefault;
    bool incremental_ = false;
    int listWidth_ = 104;
    TQSearchOptions options_;
    TColor panelColor_ = clDefault;
    bool panelOnTop_ = false;
    bool permanent_ = false;
    QString text_;
    TQSearchOptions visibleOptions_{soCaseSensitive, soWholeWords, soWrapAround, soCurrentCol, soFilterRows};
};

} // namespace qdb
