#pragma once

#include "QDBGridTypes.h"

#include "platform/db/Fields.h"
#include "platform/rtl/Collection.h"
#include "platform/rtl/Strings.h"

#include <QFont>
#include <QIODevice>
#include <QPointer>

namespace qdb {

class TQCustomDBGrid;
class TQColumn;

// A column's title: caption, alignment and font fall back to defaults until assigned; the
// header is the extra text above the caption that builds multi-level titles.
class TQColumnTitle : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ GetCaption WRITE SetCaption)
    Q_PROPERTY(qdb::DB::TAlignment Alignment READ GetAlignment WRITE SetAlignment)
    Q_PROPERTY(QFont Font READ GetFont WRITE SetFont)
    Q_PROPERTY(QString Header READ Header WRITE SetHeader)

public:
    explicit TQColumnTitle(TQColumn *column);
    TQColumn *Column() const { return column_; }

    QString GetCaption() const;
    void SetCaption(const QString &caption);
    TAlignment GetAlignment() const;
    void SetAlignment(TAlignment alignment);
    QFont GetFont() const;
    void SetFont(const QFont &font);
    QString Header() const { return header_; }
    void SetHeader(const QString &header);

    QString DefaultCaption() const;
    TAlignment DefaultAlignment() const { return taLeftJustify; }
    QFont DefaultFont() const;
    Q_INVOKABLE bool IsCaptionStored() const;
    Q_INVOKABLE bool IsAlignmentStored() const;
    Q_INVOKABLE bool IsFontStored() const;
    Q_INVOKABLE bool IsHeaderStored() const { return !header_.isEmpty(); }

    // The header path: the parents' paths and captions, then the own header, "|" between.
    QString GetHeader() const;
    int GetHeaderRowCount() const;
    QString GetHeaderRows(int row) const { return GetHeaderText(GetHeader(), row); }
    static QString GetHeaderText(const QString &path, int row);

private:
    TQColumn *column_;
    QString caption_;
    TAlignment alignment_ = taLeftJustify;
    QFont font_;
    QString header_;
};

// How a column appears in the grid's printed report.
class TQColumnReport : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool AutoHeight MEMBER AutoHeight)
    Q_PROPERTY(qdb::TDialogOptions DialogOptions MEMBER DialogOptions)
    Q_PROPERTY(QString TotalMask MEMBER TotalMask)
    Q_PROPERTY(QString TotalText MEMBER TotalText)
    Q_PROPERTY(qdb::QDBGridTypes::TTotalType TotalType MEMBER TotalType)
    Q_PROPERTY(bool Visible MEMBER Visible)

public:
    explicit TQColumnReport(QObject *parent = nullptr);
    bool IsPrinted() const { return Visible; }
    void RestoreDefaults();
    // Only values that differ from the defaults are written.
    Q_INVOKABLE bool IsAutoHeightStored() const { return AutoHeight; }
    Q_INVOKABLE bool IsDialogOptionsStored() const { return DialogOptions != TDialogOptions{doShowColumn, doItemEnabled}; }
    Q_INVOKABLE bool IsTotalMaskStored() const { return !TotalMask.isEmpty(); }
    Q_INVOKABLE bool IsTotalTextStored() const { return !TotalText.isEmpty(); }
    Q_INVOKABLE bool IsTotalTypeStored() const { return TotalType != ttNone; }
    Q_INVOKABLE bool IsVisibleStored() const { return !Visible; }

    bool AutoHeight = false;
    TDialogOptions DialogOptions{doShowColumn, doItemEnabled};
    QString TotalMask;
    QString TotalText;
    TTotalType TotalType = ttNone;
    bool Visible = true;
};

// A column of the data grid, bound to a field by name. Look properties hold a default
// (from the field or the grid) until assigned; only assigned ones are stored.
class TQColumn : public TCollectionItem
{
    Q_OBJECT
    Q_PROPERTY(QString FieldName READ GetFieldName WRITE SetFieldName)
    Q_PROPERTY(int Width READ GetWidth WRITE SetWidth)
    Q_PROPERTY(int WidthMin READ GetWidthMin WRITE SetWidthMin)
    Q_PROPERTY(int WidthMax READ GetWidthMax WRITE SetWidthMax)
    Q_PROPERTY(qdb::DB::TAlignment Alignment READ GetAlignment WRITE SetAlignment)
    Q_PROPERTY(bool ReadOnly READ GetReadOnly WRITE SetReadOnly)
    Q_PROPERTY(QFont Font READ GetFont WRITE SetFont)
    Q_PROPERTY(bool Visible READ GetVisible WRITE SetVisible)
    Q_PROPERTY(int ExpandCols READ GetExpandCols WRITE SetExpandCols)
    Q_PROPERTY(bool Expanded READ GetExpanded WRITE SetExpanded)
    Q_PROPERTY(qdb::TQColumnTitle *Title READ GetTitle)
    Q_PROPERTY(qdb::TQColumnReport *Report READ GetReport)

public:
    explicit TQColumn(TCollection *collection = nullptr);

    TQCustomDBGrid *GetGrid() const;
    // The bound field, looked up by name in the grid's data set (nullptr when missing).
    TField *GetField() const;
    TQColumnValues AssignedValues() const { return assigned_; }
    void MarkAssigned(TQColumnValue value) { assigned_ += value; }
    // True for columns made by the user, false for those the grid made from the fields.
    bool IsStored() const { return stored_; }
    void SetStored(bool on) { stored_ = on; }

    QString GetFieldName() const { return fieldName_; }
    void SetFieldName(const QString &name);
    int GetWidth() const;
    void SetWidth(int width);
    int GetWidthMin() const { return widthMin_; }
    void SetWidthMin(int w) { widthMin_ = w; }
    int GetWidthMax() const { return widthMax_; }
    void SetWidthMax(int w) { widthMax_ = w; }
    TAlignment GetAlignment() const;
    void SetAlignment(TAlignment alignment);
    bool GetReadOnly() const;
    void SetReadOnly(bool on);
    QFont GetFont() const;
    void SetFont(const QFont &font);
    bool GetVisible() const { return visible_; }
    void SetVisible(bool on);
    int GetExpandCols() const { return expandCols_; }
    void SetExpandCols(int n);
    // True only for an expandable column whose expanded flag is set.
    bool GetExpanded() const;
    void SetExpanded(bool on);
    TQColumnTitle *GetTitle() const { return title_; }
    TQColumnReport *GetReport() const { return report_; }
    // The column's weight when the grid stretches its columns; while it does not, the width
    // follows it.
    int GetWidthBase() const;
    void SetWidthBase(int width);

    int DefaultWidth() const;
    TAlignment DefaultAlignment() const;
    bool DefaultReadOnly() const;
    QFont DefaultFont() const;
    Q_INVOKABLE bool IsWidthStored() const { return assigned_.Contains(cvWidth); }
    Q_INVOKABLE bool IsAlignmentStored() const { return assigned_.Contains(cvAlignment); }
    Q_INVOKABLE bool IsReadOnlyStored() const { return assigned_.Contains(cvReadOnly); }
    Q_INVOKABLE bool IsFontStored() const { return assigned_.Contains(cvFont); }
    Q_INVOKABLE bool IsWidthMinStored() const { return widthMin_ != -1; }
    Q_INVOKABLE bool IsWidthMaxStored() const { return widthMax_ != -1; }
    Q_INVOKABLE bool IsVisibleStored() const { return !visible_; }
    Q_INVOKABLE bool IsExpandColsStored() const { return expandCols_ != 0; }
    Q_INVOKABLE bool IsExpandedStored() const { return !expanded_; }
    // Drops every assigned value, so that each getter gives its default again.
    void RestoreDefaults();

    bool Expandable() const;
    // Visible, not itself expanded, and every ancestor expanded.
    bool Showing() const;
    int Depth() const;
    TQColumn *GetParentColumn() const;
    TQLookupColumn GetLookupColumn() const;
    // The field a default width and caption are measured on.
    TField *MeasuredField() const;

private:
    friend class TQColumnTitle;
    void changed();

    QString fieldName_;
    TQColumnValues assigned_;
    bool stored_ = true;
    int width_ = 0;
    int widthMin_ = -1;
    int widthMax_ = -1;
    TAlignment alignment_ = taLeftJustify;
    bool readOnly_ = false;
    QFont font_;
    bool visible_ = true;
    int expandCols_ = 0;
    bool expanded_ = true;
    int widthBase_ = -1; // -1: the width
    TQColumnTitle *title_;
    TQColumnReport *report_;
};

// The grid's columns.
class TQDBGridColumns : public TCollectionOf<TQColumn>
{
    Q_OBJECT

public:
    explicit TQDBGridColumns(TQCustomDBGrid *grid);
    TQCustomDBGrid *Grid() const { return grid_; }

    // Customised when the last column is one the user made.
    TDBGridColumnsState State() const;
    void SetState(TDBGridColumnsState state);
    // One column per field of the data set (object and array children right after their
    // parent), made by the grid.
    void RebuildColumns();
    // The column bound to a field name, searched from a position on; nullptr when none.
    TQColumn *FindColumn(const QString &fieldName, int from = 0) const;

    // Column files: the columns and the grid's sort order as one component stream. A stream
    // that cannot be read raises EReadError and leaves the columns as they were.
    void SaveToStream(QIODevice &stream);
    void LoadFromStream(QIODevice &stream);
    void SaveToFile(const QString &fileName);
    void LoadFromFile(const QString &fileName);

    // The layout block of the columns as name=value lines, and its reading back: order,
    // base widths scaled between screen densities, and the visible, expanded and printed flags.
    void GetSettings(TStrings &layout) const;
    void ApplySettings(const TStrings &layout);
    void SetSettings(const TStrings &layout) { ApplySettings(layout); }

protected:
    void Update(TCollectionItem *item) override;

private:
    TQCustomDBGrid *grid_;
};

// Separates the values of a column's line in a layout.
QString &ColumnSettingsSeparator();

} // namespace qdb
