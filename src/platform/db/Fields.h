#pragma once

#include "FieldTypes.h"

#include "platform/rtl/Events.h"
#include "platform/rtl/Variant.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

namespace qdb {

class TDataSet;
class TField;
class TObjectField;

using TFieldNotifyEvent = std::function<void(TField *sender)>;
using TFieldGetTextEvent = std::function<void(TField *sender, QString &text, bool displayText)>;
using TFieldSetTextEvent = std::function<void(TField *sender, const QString &text)>;

// One column of a data set. A field reads and writes the data set's current record; its
// value is held as a Variant of the field type's kind (text, integer, float, currency,
// boolean, date-time or bytes). Writing checks the state and ReadOnly, converts text with
// the field's rules, runs OnValidate, stores, then OnChange.
class TField : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString FieldName READ FieldName WRITE SetFieldName)
    Q_PROPERTY(QString DisplayLabel READ DisplayLabel WRITE SetDisplayLabel)
    Q_PROPERTY(int DisplayWidth READ DisplayWidth WRITE SetDisplayWidth)
    Q_PROPERTY(qdb::DB::TAlignment Alignment READ Alignment WRITE SetAlignment)
    Q_PROPERTY(bool ReadOnly READ ReadOnly WRITE SetReadOnly)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
    Q_PROPERTY(bool Required READ Required WRITE SetRequired)
    Q_PROPERTY(int Size READ Size WRITE SetSize)
    Q_PROPERTY(qdb::DB::TFieldKind FieldKind READ FieldKind WRITE SetFieldKind)
    Q_PROPERTY(QString EditMask READ EditMask WRITE SetEditMask)
    Q_PROPERTY(QString KeyFields READ KeyFields WRITE SetKeyFields)
    Q_PROPERTY(QString LookupKeyFields READ LookupKeyFields WRITE SetLookupKeyFields)
    Q_PROPERTY(QString LookupResultField READ LookupResultField WRITE SetLookupResultField)

public:
    explicit TField(QObject *parent = nullptr);
    ~TField() override;

    TDataSet *DataSet() const { return dataSet_; }
    // Joins a data set's field list (leaving the previous one).
    void SetDataSet(TDataSet *dataSet);
    TObjectField *ParentField() const { return parentField_; }
    void SetParentField(TObjectField *parent);

    TFieldType DataType() const { return dataType_; }
    TFieldKind FieldKind() const { return fieldKind_; }
    void SetFieldKind(TFieldKind kind);
    bool IsCalculated() const { return fieldKind_ == fkCalculated || fieldKind_ == fkLookup; }
    bool Lookup() const { return fieldKind_ == fkLookup; }

    QString FieldName() const { return fieldName_; }
    void SetFieldName(const QString &name);
    // The name with the names of parent fields: "Address.City", "Phones[1]".
    QString FullName() const;
    QString DisplayLabel() const { return displayLabel_.isEmpty() ? fieldName_ : displayLabel_; }
    void SetDisplayLabel(const QString &label);
    // What messages and titles call the field.
    QString DisplayName() const { return DisplayLabel(); }
    int DisplayWidth() const { return displayWidth_ >= 0 ? displayWidth_ : DefaultWidth(); }
    void SetDisplayWidth(int width);
    TAlignment Alignment() const { return alignment_; }
    void SetAlignment(TAlignment a);
    bool ReadOnly() const { return readOnly_; }
    void SetReadOnly(bool on);
    bool Visible() const { return visible_; }
    void SetVisible(bool on);
    bool Required() const { return required_; }
    void SetRequired(bool on) { required_ = on; }
    int Size() const { return size_; }
    void SetSize(int size);
    QString EditMask() const { return editMask_; }
    void SetEditMask(const QString &mask) { editMask_ = mask; }
    int Tag() const { return tag_; }
    void SetTag(int tag) { tag_ = tag; }
    // Position in the data set's top-level Fields (or in the parent's children).
    int Index() const;
    void SetIndex(int index);
    // 1-based position among the data fields of the data set, 0 for calculated fields.
    int FieldNo() const { return fieldNo_; }

    // Lookup definition: the value of LookupResultField in LookupDataSet for the record whose
    // LookupKeyFields equal this data set's KeyFields (";" separated lists).
    TDataSet *LookupDataSet() const { return lookupDataSet_; }
    void SetLookupDataSet(TDataSet *ds) { lookupDataSet_ = ds; }
    QString KeyFields() const { return keyFields_; }
    void SetKeyFields(const QString &s) { keyFields_ = s; }
    QString LookupKeyFields() const { return lookupKeyFields_; }
    void SetLookupKeyFields(const QString &s) { lookupKeyFields_ = s; }
    QString LookupResultField() const { return lookupResultField_; }
    void SetLookupResultField(const QString &s) { lookupResultField_ = s; }

    // Values of the current record.
    Variant Value() const;
    // The value without a copy where the data set keeps one; else it fills scratch.
    const Variant &ValueRef(Variant &scratch) const;
    void SetValue(const Variant &value);
    Variant AsVariant() const { return Value(); }
    void SetAsVariant(const Variant &value) { SetValue(value); }
    bool IsNull() const
    {
        Variant scratch;
        return ValueRef(scratch).IsClear();
    }
    void Clear() { SetValue(Variant::Null()); }
    virtual QString AsString() const;
    virtual void SetAsString(const QString &text);
    int AsInteger() const;
    void SetAsInteger(int v) { SetAsLargeInt(v); }
    qint64 AsLargeInt() const;
    virtual void SetAsLargeInt(qint64 v);
    double AsFloat() const;
    virtual void SetAsFloat(double v);
    Currency AsCurrency() const;
    void SetAsCurrency(Currency v);
    TDateTime AsDateTime() const;
    void SetAsDateTime(TDateTime v);
    bool AsBoolean() const;
    virtual void SetAsBoolean(bool v);
    QByteArray AsBytes() const;
    void SetAsBytes(const QByteArray &v) { SetValue(Variant(v)); }
    // The edit text and the display text, through OnGetText when assigned.
    QString Text() const { return GetText(false); }
    void SetText(const QString &text);
    QString DisplayText() const { return GetText(true); }
    // The value before the current edit began.
    Variant OldValue() const;

    bool CanModify() const;
    bool IsBlob() const;
    // An object, array, reference or data set field, which has child fields.
    bool IsObjectField() const { return isObjectField_; }
    // Asks the data controls to focus this field's editor.
    void FocusControl();

    // The Variant kind that values of this field take.
    VarType ValueType() const;
    // Converts a value to this field's kind; raises EDatabaseError naming the field.
    Variant Convert(const Variant &value) const;

    TFieldGetTextEvent OnGetText;
    TFieldSetTextEvent OnSetText;
    TFieldNotifyEvent OnValidate;
    TFieldNotifyEvent OnChange;

    // Called by the data set: OnValidate with the value being written, then OnChange.
    void Validate(const Variant &value);
    void Change();
    // While OnValidate runs, Value() reads the value being written.
    const Variant *ValidatingValue() const { return validating_; }

protected:
    void SetDataType(TFieldType type) { dataType_ = type; }
    virtual int DefaultWidth() const { return 10; }
    virtual QString GetText(bool displayText) const;
    [[noreturn]] void AccessError(const QString &typeName) const;
    // Reads the value as T through a conversion; a failed conversion is an access error.
    template<typename T, typename F>
    T readAs(const char *typeName, F convert) const;
    // Writes typed text: empty clears, text that does not parse raises `message` (with the
    // text and the field's name) and changes nothing.
    template<typename T, typename Parse, typename Set>
    void setFromText(const QString &text, const QString &message, Parse parse, Set set)
    {
        if (text.trimmed().isEmpty()) {
            Clear();
            return;
        }
        T value{};
        if (!parse(text, value))
            ParseError(message, text);
        set(value);
    }
    [[noreturn]] void ParseError(const QString &message, const QString &text) const;
    [[noreturn]] void RangeError(double value, double min, double max) const;
    void CheckInactive() const;

private:
    friend class TDataSet;
    friend class TObjectField;
    friend TField *CreateFieldOfType(TFieldType type, QObject *parent);
    TDataSet *dataSet_ = nullptr; // cleared by the data set when it goes
    TObjectField *parentField_ = nullptr;
    TFieldType dataType_ = ftUnknown;
    TFieldKind fieldKind_ = fkData;
    QString fieldName_;
    QString displayLabel_;
    int displayWidth_ = -1;
    TAlignment alignment_ = taLeftJustify;
    bool readOnly_ = false;
    bool visible_ = true;
    bool required_ = false;
    int size_ = 0;
    QString editMask_;
    int tag_ = 0;
    int fieldNo_ = 0;
    int slot_ = -1; // position in the data set's FieldList, the record buffer slot
    QPointer<TDataSet> lookupDataSet_;
    QString keyFields_;
    QString lookupKeyFields_;
    QString lookupResultField_;
    const Variant *validating_ = nullptr;
    bool isObjectField_ = false;
    friend class TFieldValueScope;
};

// While it lives, the field reads `value` in place of its record's, so that a value found
// outside the records (one of a database's distinct values) gets the texts the field would
// show for it, through its formats and OnGetText alike.
class TFieldValueScope
{
public:
    TFieldValueScope(TField *field, const Variant &value)
        : field_(field), value_(value.IsClear() ? value : field->Convert(value)), saved_(field->validating_)
    {
        field_->validating_ = &value_;
    }
    ~TFieldValueScope() { field_->validating_ = saved_; }
    TFieldValueScope(const TFieldValueScope &) = delete;
    TFieldValueScope &operator=(const TFieldValueScope &) = delete;

private:
    TField *field_;
    Variant value_;
    const Variant *saved_;
};

// ---- text ----

class TStringField : public TField
{
    Q_OBJECT
public:
    explicit TStringField(QObject *parent = nullptr);
    bool FixedChar() const { return DataType() == ftFixedChar; }
    void SetFixedChar(bool on) { SetDataType(on ? ftFixedChar : ftString); }

protected:
    int DefaultWidth() const override { return Size(); }
};

class TWideStringField : public TStringField
{
    Q_OBJECT
public:
    explicit TWideStringField(QObject *parent = nullptr);
};

class TGuidField : public TStringField
{
    Q_OBJECT
public:
    explicit TGuidField(QObject *parent = nullptr);
};

// ---- numbers ----

class TNumericField : public TField
{
    Q_OBJECT
    Q_PROPERTY(QString DisplayFormat READ DisplayFormat WRITE SetDisplayFormat)
    Q_PROPERTY(QString EditFormat READ EditFormat WRITE SetEditFormat)
protected:
    // The formats when set, money for a currency display, else the plain text.
    QString NumberText(bool displayText, bool currency, QString (*plain)(const Variant &, const TNumericField *)) const;

public:
    explicit TNumericField(QObject *parent = nullptr);
    // A Format specifier such as "%.2f" or "%d", applied to the display or edit text.
    QString DisplayFormat() const { return displayFormat_; }
    void SetDisplayFormat(const QString &f);
    QString EditFormat() const { return editFormat_; }
    void SetEditFormat(const QString &f) { editFormat_ = f; }

protected:
    QString GetText(bool displayText) const override;

private:
    QString displayFormat_;
    QString editFormat_;
};

class TIntegerField : public TNumericField
{
    Q_OBJECT
public:
    explicit TIntegerField(QObject *parent = nullptr);
    qint64 MinValue() const { return minValue_; }
    qint64 MaxValue() const { return maxValue_; }
    // 0 and 0 mean the type's own range.
    void SetMinValue(qint64 v) { minValue_ = v; }
    void SetMaxValue(qint64 v) { maxValue_ = v; }
    void SetAsLargeInt(qint64 v) override;
    void SetAsString(const QString &text) override;

protected:
    TIntegerField(TFieldType type, QObject *parent);
    int DefaultWidth() const override;
    void CheckRange(qint64 v) const;

private:
    qint64 minValue_ = 0;
    qint64 maxValue_ = 0;
};

#define QDB_INTEGER_FIELD(Name, Type)                                                   \
    class Name : public TIntegerField                                                   \
    {                                                                                   \
        Q_OBJECT                                                                        \
    public:                                                                             \
        explicit Name(QObject *parent = nullptr) : TIntegerField(Type, parent) {}       \
    };
QDB_INTEGER_FIELD(TSmallintField, ftSmallint)
QDB_INTEGER_FIELD(TShortintField, ftShortint)
QDB_INTEGER_FIELD(TByteField, ftByte)
QDB_INTEGER_FIELD(TWordField, ftWord)
QDB_INTEGER_FIELD(TLongWordField, ftLongWord)
QDB_INTEGER_FIELD(TLargeintField, ftLargeint)

class TAutoIncField : public TIntegerField
{
    Q_OBJECT
public:
    explicit TAutoIncField(QObject *parent = nullptr);
};

class TFloatField : public TNumericField
{
    Q_OBJECT
    Q_PROPERTY(bool Currency READ IsCurrency WRITE SetCurrency)
    Q_PROPERTY(int Precision READ Precision WRITE SetPrecision)
public:
    explicit TFloatField(QObject *parent = nullptr);
    // Shown as money.
    bool IsCurrency() const { return currency_; }
    void SetCurrency(bool on) { currency_ = on; }
    int Precision() const { return precision_; }
    void SetPrecision(int p) { precision_ = p; }
    double MinValue() const { return minValue_; }
    double MaxValue() const { return maxValue_; }
    void SetMinValue(double v) { minValue_ = v; }
    void SetMaxValue(double v) { maxValue_ = v; }
    void SetAsFloat(double v) override;
    void SetAsString(const QString &text) override;

protected:
    TFloatField(TFieldType type, QObject *parent);
    QString GetText(bool displayText) const override;

private:
    bool currency_ = false;
    int precision_ = 15;
    double minValue_ = 0;
    double maxValue_ = 0;
};

class TCurrencyField : public TFloatField
{
    Q_OBJECT
public:
    explicit TCurrencyField(QObject *parent = nullptr);
};
class TExtendedField : public TFloatField
{
    Q_OBJECT
public:
    explicit TExtendedField(QObject *parent = nullptr) : TFloatField(ftExtended, parent) {}
};
class TSingleField : public TFloatField
{
    Q_OBJECT
public:
    explicit TSingleField(QObject *parent = nullptr) : TFloatField(ftSingle, parent) { SetPrecision(7); }
};

// Fixed-point decimals with up to four decimals, held as Currency.
class TBCDField : public TNumericField
{
    Q_OBJECT
    Q_PROPERTY(int Precision READ Precision WRITE SetPrecision)
public:
    explicit TBCDField(QObject *parent = nullptr);
    int Precision() const { return precision_; }
    void SetPrecision(int p) { precision_ = p; }
    bool IsCurrency() const { return currency_; }
    void SetCurrency(bool on) { currency_ = on; }
    void SetAsString(const QString &text) override;

protected:
    TBCDField(TFieldType type, QObject *parent);
    int DefaultWidth() const override { return precision_ + 2; }
    QString GetText(bool displayText) const override;

private:
    int precision_ = 18;
    bool currency_ = false;
};

class TFMTBCDField : public TBCDField
{
    Q_OBJECT
public:
    explicit TFMTBCDField(QObject *parent = nullptr) : TBCDField(ftFMTBcd, parent) {}
};

// ---- other scalars ----

class TBooleanField : public TField
{
    Q_OBJECT
    Q_PROPERTY(QString DisplayValues READ DisplayValues WRITE SetDisplayValues)
public:
    explicit TBooleanField(QObject *parent = nullptr);
    // "True;False": the texts of true and false.
    QString DisplayValues() const { return displayValues_; }
    void SetDisplayValues(const QString &values);
    QString TrueText() const { return trueText_; }
    QString FalseText() const { return falseText_; }
    QString AsString() const override;
    void SetAsString(const QString &text) override;

protected:
    int DefaultWidth() const override { return 5; }

private:
    QString displayValues_;
    QString trueText_;
    QString falseText_;
};

class TDateTimeField : public TField
{
    Q_OBJECT
    Q_PROPERTY(QString DisplayFormat READ DisplayFormat WRITE SetDisplayFormat)
public:
    explicit TDateTimeField(QObject *parent = nullptr);
    // A FormatDateTime pattern for the display text.
    QString DisplayFormat() const { return displayFormat_; }
    void SetDisplayFormat(const QString &f);
    QString AsString() const override;
    void SetAsString(const QString &text) override;

protected:
    TDateTimeField(TFieldType type, QObject *parent);
    int DefaultWidth() const override;
    QString GetText(bool displayText) const override;

private:
    QString displayFormat_;
};

class TDateField : public TDateTimeField
{
    Q_OBJECT
public:
    explicit TDateField(QObject *parent = nullptr) : TDateTimeField(ftDate, parent) {}
};
class TTimeField : public TDateTimeField
{
    Q_OBJECT
public:
    explicit TTimeField(QObject *parent = nullptr) : TDateTimeField(ftTime, parent) {}
};
class TSQLTimeStampField : public TDateTimeField
{
    Q_OBJECT
public:
    explicit TSQLTimeStampField(QObject *parent = nullptr) : TDateTimeField(ftTimeStamp, parent) {}
};

// ---- binary and large values ----

class TBinaryField : public TField
{
    Q_OBJECT
public:
    explicit TBinaryField(QObject *parent = nullptr) : TBinaryField(ftBytes, parent) {}
    QString AsString() const override;

protected:
    TBinaryField(TFieldType type, QObject *parent);
};
class TBytesField : public TBinaryField
{
    Q_OBJECT
public:
    explicit TBytesField(QObject *parent = nullptr) : TBinaryField(ftBytes, parent) {}
};
class TVarBytesField : public TBinaryField
{
    Q_OBJECT
public:
    explicit TVarBytesField(QObject *parent = nullptr) : TBinaryField(ftVarBytes, parent) {}
};

// Blobs show a placeholder as display text: "(BLOB)", "(MEMO)", upper case when there is
// data and lower case when there is none.
class TBlobField : public TField
{
    Q_OBJECT
public:
    explicit TBlobField(QObject *parent = nullptr) : TBlobField(ftBlob, parent) {}
    TFieldType BlobType() const { return DataType(); }
    void SetBlobType(TFieldType type) { SetDataType(type); }
    // What the field shows for a value or for none, whatever the value is.
    QString DisplayTextOf(bool null) const;

protected:
    TBlobField(TFieldType type, QObject *parent);
    QString GetText(bool displayText) const override;
};
class TMemoField : public TBlobField
{
    Q_OBJECT
public:
    explicit TMemoField(QObject *parent = nullptr) : TBlobField(ftMemo, parent) {}
};
class TWideMemoField : public TBlobField
{
    Q_OBJECT
public:
    explicit TWideMemoField(QObject *parent = nullptr) : TBlobField(ftWideMemo, parent) {}
};
class TGraphicField : public TBlobField
{
    Q_OBJECT
public:
    explicit TGraphicField(QObject *parent = nullptr) : TBlobField(ftGraphic, parent) {}
};

class TVariantField : public TField
{
    Q_OBJECT
public:
    explicit TVariantField(QObject *parent = nullptr);
};

// ---- structured fields ----

// A parent of child fields: an object (ADT) or an array. Its value is the array of the
// children's values; its children follow it in the data set's FieldList.
class TObjectField : public TField
{
    Q_OBJECT
public:
    explicit TObjectField(QObject *parent = nullptr) : TObjectField(ftADT, parent) {}
    ~TObjectField() override;
    const QList<TField *> &Fields() const { return children_; }
    // The children's values, "(a, b)": the value itself is a list no text stands for.
    QString AsString() const override;
    void AddField(TField *child);
    void RemoveField(TField *child);

protected:
    TObjectField(TFieldType type, QObject *parent);
    QString GetText(bool displayText) const override;

private:
    friend class TField;
    QList<TField *> children_;
};
class TADTField : public TObjectField
{
    Q_OBJECT
public:
    explicit TADTField(QObject *parent = nullptr) : TObjectField(ftADT, parent) {}
};
class TArrayField : public TObjectField
{
    Q_OBJECT
public:
    explicit TArrayField(QObject *parent = nullptr) : TObjectField(ftArray, parent) {}
};
class TReferenceField : public TObjectField
{
    Q_OBJECT
public:
    explicit TReferenceField(QObject *parent = nullptr) : TObjectField(ftReference, parent) {}
};
// A nested data set held by a field; the nested data set itself is the application's.
class TDataSetField : public TObjectField
{
    Q_OBJECT
public:
    explicit TDataSetField(QObject *parent = nullptr) : TObjectField(ftDataSet, parent) {}
    TDataSet *NestedDataSet() const { return nested_; }
    void SetNestedDataSet(TDataSet *ds) { nested_ = ds; }

private:
    QPointer<TDataSet> nested_;
};

// Creates a field of the class that serves a data type; nullptr for types without one.
TField *CreateFieldOfType(TFieldType type, QObject *parent = nullptr);

} // namespace qdb
