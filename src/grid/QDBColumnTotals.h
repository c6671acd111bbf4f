#pragma once

// A column's totals sections: a header total above the list of total values, the fields of
// the current record below them and a footer total at the bottom. They are what the grid's
// bottom rows show; the calculation over the records fills their values.

#include "QDBGridTypes.h"

#include "platform/db/FieldTypes.h"
#include "platform/rtl/Collection.h"
#include "platform/rtl/Variant.h"

#include <QColor>
#include <QFont>
#include <QMenu>
#include <QPointer>

namespace qdb {

class TField;
class TQColumn;
class TQCustomDBGrid;

class TQColumnTotalValue : public TCollectionItem
{
    Q_OBJECT
    Q_PROPERTY(qdb::DB::TAlignment Alignment READ GetAlignment WRITE SetAlignment)
    Q_PROPERTY(qdb::QDBGridTypes::TCalcApply CalcApply READ GetCalcApply WRITE SetCalcApply)
    Q_PROPERTY(qdb::QDBGridTypes::TCalcValue CalcValue READ GetCalcValue WRITE SetCalcValue)
    Q_PROPERTY(QString Caption READ GetCaption WRITE SetCaption)
    Q_PROPERTY(QColor Color READ GetColor WRITE SetColor)
    Q_PROPERTY(QFont Font READ GetFont WRITE SetFont)
    Q_PROPERTY(bool Ellipsis READ GetEllipsis WRITE SetEllipsis)
    Q_PROPERTY(QString FieldName READ GetFieldName WRITE SetFieldName)
    Q_PROPERTY(QString Format READ GetFormat WRITE SetFormat)
    Q_PROPERTY(bool FormatAsFloat READ GetFormatAsFloat WRITE SetFormatAsFloat)
    Q_PROPERTY(QString Hint READ GetHint WRITE SetHint)
    Q_PROPERTY(int ImageIndex READ GetImageIndex WRITE SetImageIndex)
    Q_PROPERTY(qdb::QDBGridTypes::TNullValue NullValue READ GetNullValue WRITE SetNullValue)
    Q_PROPERTY(QMenu *PopupMenu READ GetPopupMenu WRITE SetPopupMenu)
    Q_PROPERTY(qdb::QDBGridTypes::TTotalBox TotalBox READ GetTotalBox WRITE SetTotalBox)
    Q_PROPERTY(int TotalRecNo READ GetTotalRecNo WRITE SetTotalRecNo)
    Q_PROPERTY(qdb::QDBGridTypes::TTotalResult TotalResult READ GetTotalResult WRITE SetTotalResult)
    Q_PROPERTY(qdb::QDBGridTypes::TVAlignment VAlignment READ GetVAlignment WRITE SetVAlignment)
    Q_PROPERTY(bool Visible READ GetVisible WRITE SetVisible)
    Q_PROPERTY(bool WordWrap READ GetWordWrap WRITE SetWordWrap)
    Q_CLASSINFO("default:CalcApply", "caBoth")
    Q_CLASSINFO("default:CalcValue", "cvSum")
    Q_CLASSINFO("default:Caption", "")
    Q_CLASSINFO("default:Ellipsis", "true")
    Q_CLASSINFO("default:FieldName", "")
    Q_CLASSINFO("default:Format", "")
    Q_CLASSINFO("default:FormatAsFloat", "false")
    Q_CLASSINFO("default:Hint", "")
    Q_CLASSINFO("default:ImageIndex", "-1")
    Q_CLASSINFO("default:NullValue", "nvExclude")
    Q_CLASSINFO("default:TotalBox", "tbAuto")
    Q_CLASSINFO("default:TotalRecNo", "1")
    Q_CLASSINFO("default:TotalResult", "trCaption")
    Q_CLASSINFO("default:VAlignment", "tvCenter")
    Q_CLASSINFO("default:Visible", "true")
    Q_CLASSINFO("default:WordWrap", "true")

public:
    explicit TQColumnTotalValue(TCollection *collection = nullptr);
    // A header or footer section of a column, outside any collection.
    explicit TQColumnTotalValue(TQColumn *column);

    TQColumn *Column() const;

    // Alignment, colour and font follow the column until assigned.
    TAlignment GetAlignment() const;
    void SetAlignment(TAlignment value);
    Q_INVOKABLE bool IsAlignmentStored() const { return alignmentAssigned_; }
    QColor GetColor() const;
    void SetColor(const QColor &value);
    Q_INVOKABLE bool IsColorStored() const { return color_.isValid(); }
    QFont GetFont() const;
    void SetFont(const QFont &value);
    Q_INVOKABLE bool IsFontStored() const { return fontAssigned_; }

    TCalcApply GetCalcApply() const { return calcApply_; }
    void SetCalcApply(TCalcApply value) { assignCalc(calcApply_, value); }
    TCalcValue GetCalcValue() const { return calcValue_; }
    void SetCalcValue(TCalcValue value) { assignCalc(calcValue_, value); }
    QString GetCaption() const { return caption_; }
    void SetCaption(const QString &value) { assign(caption_, value); }
    bool GetEllipsis() const { return ellipsis_; }
    void SetEllipsis(bool value) { assign(ellipsis_, value); }
    QString GetFieldName() const { return fieldName_; }
    void SetFieldName(const QString &value) { assignCalc(fieldName_, value); }
    QString GetFormat() const { return format_; }
    void SetFormat(const QString &value) { assign(format_, value); }
    bool GetFormatAsFloat() const { return formatAsFloat_; }
    void SetFormatAsFloat(bool value) { assign(formatAsFloat_, value); }
    QString GetHint() const { return hint_; }
    void SetHint(const QString &value) { hint_ = value; }
    int GetImageIndex() const { return imageIndex_; }
    void SetImageIndex(int value) { assign(imageIndex_, value); }
    TNullValue GetNullValue() const { return nullValue_; }
    void SetNullValue(TNullValue value) { assignCalc(nullValue_, value); }
    QMenu *GetPopupMenu() const { return popupMenu_; }
    void SetPopupMenu(QMenu *menu) { popupMenu_ = menu; }
    TTotalBox GetTotalBox() const { return totalBox_; }
    void SetTotalBox(TTotalBox value) { assign(totalBox_, value); }
    int GetTotalRecNo() const { return totalRecNo_; }
    void SetTotalRecNo(int value) { assign(totalRecNo_, value); }
    TTotalResult GetTotalResult() const { return totalResult_; }
    void SetTotalResult(TTotalResult value) { assignCalc(totalResult_, value); }
    TVAlignment GetVAlignment() const { return vAlignment_; }
    void SetVAlignment(TVAlignment value) { assign(vAlignment_, value); }
    bool GetVisible() const { return visible_; }
    void SetVisible(bool value) { assign(visible_, value); }
    bool GetWordWrap() const { return wordWrap_; }
    void SetWordWrap(bool value) { assign(wordWrap_, value); }

    const Variant &Value() const { return value_; }
    // Repaints the section.
    void SetValue(const Variant &value);

    TQCustomDBGrid *Grid() const;
    // The field FieldName names in the grid's data set; nullptr when it names none.
    TField *GetField() const;
    // One step of a calculation pass; answers whether the value takes part in calculated
    // totals. The record pass reads the field in the data set's current record.
    virtual bool DoCalcValue(TCalcPass pass);
    // The record pass with the field's value given (the record read some other way).
    void CalcRecord(Variant value);
    // Takes the state a record pass over many records would have left: the value and the
    // number of records counted.
    void SetCalcState(const Variant &value, quint32 counted);
    quint32 RecordsCounted() const { return counter_; }
    // The text the section shows, before the grid's OnTotalGetText.
    QString GetTotalText() const;
    // "Sum(Price)", "DataField: Price", "<None>": what the section is, in a list of them.
    QString DisplayName() const override;

private:
    // True when the value changed.
    template<typename T>
    bool assign(T &member, const T &value)
    {
        if (member == value)
            return false;
        member = value;
        changed();
        return true;
    }
    void changed();
    template<typename T>
    void assignCalc(T &member, const T &value)
    {
        if (assign(member, value))
            calcChanged();
    }
    // What the section calculates changed: the grid calculates again.
    void calcChanged();
    // The total another one refers to (trTotalField), nullptr when there is none.
    TQColumnTotalValue *referredTotal() const;
    // The field FieldName names, else the column's (what a data-field section shows).
    TField *shownField() const;
    QString formatted(const Variant &value, const TField *field) const;

    TQColumn *column_ = nullptr; // the owner of a header or footer
    TAlignment alignment_ = taLeftJustify;
    bool alignmentAssigned_ = false;
    QColor color_;
    QFont font_;
    bool fontAssigned_ = false;
    TCalcApply calcApply_ = caBoth;
    TCalcValue calcValue_ = cvSum;
    QString caption_;
    bool ellipsis_ = true;
    QString fieldName_;
    QString format_;
    bool formatAsFloat_ = false;
    QString hint_;
    int imageIndex_ = -1;
    TNullValue nullValue_ = nvExclude;
    friend class TQColumnTotalFields;
    QPointer<QMenu> popupMenu_;
    TTotalBox totalBox_ = tbAuto;
    int totalRecNo_ = 1;
    TTotalResult totalResult_ = trCaption;
    TVAlignment vAlignment_ = tvCenter;
    bool visible_ = true;
    bool wordWrap_ = true;
    Variant value_;
    quint32 counter_ = 0; // records counted by the calculation
    QPointer<TField> calcField_; // FieldName's field, found once a calculation
    bool calcFieldMissing_ = false;
    TQCustomDBGrid *calcGrid_ = nullptr; // the grid, found once a calculation
};

class TQColumnTotalHeader : public TQColumnTotalValue
{
    Q_OBJECT
public:
    using TQColumnTotalValue::TQColumnTotalValue;
};

class TQColumnTotalFooter : public TQColumnTotalValue
{
    Q_OBJECT
public:
    using TQColumnTotalValue::TQColumnTotalValue;
};

// The column's cell in the rows of the totals data link's records (dgTotalFields), under the
// values and above the footer: by default the record's value of the column's own field; a
// caption or another total otherwise. The calculation passes leave it alone.
class TQColumnTotalFields : public TQColumnTotalValue
{
    Q_OBJECT
    Q_CLASSINFO("default:TotalResult", "trDataField")
public:
    explicit TQColumnTotalFields(TQColumn *column);
};

// The column's list of total values, one bottom row each.
class TQColumnTotalValues : public TCollectionOf<TQColumnTotalValue>
{
    Q_OBJECT
public:
    explicit TQColumnTotalValues(TQColumn *column);
    TQColumn *Column() const;

protected:
    void Update(TCollectionItem *item) override;
};

// The text of a null total, and the delay in milliseconds of delayed total updates; both
// program-wide.
QString &NullValueString();
int &DelayInterval();

} // namespace qdb
