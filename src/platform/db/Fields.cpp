#include "Fields.h"

#include "DBConsts.h"
#include "DataSet.h"

#include "platform/rtl/Conversions.h"
#include "platform/rtl/Exceptions.h"
#include "platform/rtl/FloatDigits.h"
#include "platform/rtl/Format.h"
#include "platform/rtl/FormatDateTime.h"

#include <QMetaEnum>

#include <cmath>
#include <limits>

namespace qdb {

QString FieldTypeName(TFieldType type)
{
    const char *key = QMetaEnum::fromType<TFieldType>().valueToKey(type);
    return key ? QString::fromLatin1(key + 2) : QStringLiteral("Unknown");
}

void RegisterDBTypes()
{
    RegisterSetType<TLocateOption>();
    RegisterSetType<TFilterOption>();
    RegisterSetType<TIndexOption>();
}

namespace {

VarType valueTypeOf(TFieldType t)
{
    switch (t) {
    case ftString: case ftFixedChar: case ftWideString: case ftFixedWideChar: case ftGuid: case ftMemo:
    case ftWideMemo: case ftFmtMemo: case ftOraClob:
        return VarType::String;
    case ftSmallint: case ftInteger: case ftWord: case ftAutoInc: case ftLargeint: case ftLongWord:
    case ftShortint: case ftByte:
        return VarType::Integer;
    case ftBoolean: return VarType::Boolean;
    case ftFloat: case ftCurrency: case ftExtended: case ftSingle: return VarType::Double;
    case ftBCD: case ftFMTBcd: return VarType::Currency;
    case ftDate: case ftTime: case ftDateTime: case ftTimeStamp: case ftOraTimeStamp: case ftTimeStampOffset:
        return VarType::DateTime;
    case ftBytes: case ftVarBytes: case ftBlob: case ftGraphic: case ftTypedBinary: case ftOraBlob:
    case ftParadoxOle: case ftDBaseOle: case ftStream:
        return VarType::Bytes;
    case ftADT: case ftArray: return VarType::Array;
    default: return VarType::Unassigned; // any kind
    }
}

struct IntRange
{
    qint64 min, max;
};

IntRange typeRange(TFieldType t)
{
    switch (t) {
    case ftSmallint: return {-32768, 32767};
    case ftShortint: return {-128, 127};
    case ftByte: return {0, 255};
    case ftWord: return {0, 65535};
    case ftLongWord: return {0, 4294967295LL};
    case ftInteger: case ftAutoInc: return {std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()};
    default: return {std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()};
    }
}

} // namespace

// ---- TField ----

TField::TField(QObject *parent) : QObject(parent) {}

TField::~TField()
{
    if (parentField_)
        parentField_->children_.removeOne(this);
    else if (dataSet_)
        dataSet_->unregisterField(this);
}

void TField::SetDataSet(TDataSet *dataSet)
{
    if (dataSet_ == dataSet)
        return;
    if (dataSet)
        dataSet->registerField(this); // raises on an open data set or a duplicate name
    if (dataSet_)
        dataSet_->unregisterField(this);
    dataSet_ = dataSet;
}

void TField::SetParentField(TObjectField *parent)
{
    if (parentField_ == parent)
        return;
    if (parentField_)
        parentField_->RemoveField(this);
    if (parent)
        parent->AddField(this);
}

void TField::CheckInactive() const
{
    if (dataSet_ && dataSet_->Active())
        DatabaseError(DBConsts::SDataSetOpen(), dataSet_);
}

void TField::SetFieldKind(TFieldKind kind)
{
    CheckInactive();
    fieldKind_ = kind;
}

void TField::SetFieldName(const QString &name)
{
    CheckInactive();
    fieldName_ = name;
}

QString TField::FullName() const
{
    if (!parentField_)
        return fieldName_;
    if (parentField_->DataType() == ftArray)
        return parentField_->FullName() + QLatin1Char('[') + QString::number(Index()) + QLatin1Char(']');
    return parentField_->FullName() + QLatin1Char('.') + fieldName_;
}

namespace {
// Tells the data links that a field's look changed.
void layoutChanged(TDataSet *ds)
{
    if (ds && ds->Active())
        ds->DataEvent(deLayoutChange, 0);
}
} // namespace

void TField::SetDisplayLabel(const QString &label)
{
    displayLabel_ = label == fieldName_ ? QString() : label;
    layoutChanged(dataSet_);
}

void TField::SetDisplayWidth(int width)
{
    displayWidth_ = width;
    layoutChanged(dataSet_);
}

void TField::SetAlignment(TAlignment a)
{
    alignment_ = a;
    layoutChanged(dataSet_);
}

void TField::SetReadOnly(bool on)
{
    readOnly_ = on;
    layoutChanged(dataSet_);
}

void TField::SetVisible(bool on)
{
    visible_ = on;
    layoutChanged(dataSet_);
}

void TField::SetSize(int size)
{
    CheckInactive();
    size_ = size;
}

int TField::Index() const
{
    if (parentField_)
        return int(parentField_->children_.indexOf(const_cast<TField *>(this)));
    return dataSet_ ? dataSet_->Fields().IndexOf(this) : -1;
}

void TField::SetIndex(int index)
{
    const int current = Index();
    if (current < 0 || current == index)
        return;
    QList<TField *> &list = parentField_ ? parentField_->children_ : dataSet_->fields_.list_;
    list.move(current, qBound(0, index, int(list.size()) - 1));
    dataSet_->rebuildFieldList();
    // An open data set's fields keep their numbers and buffer slots: the records read so far
    // and the data set's own map of columns still hold. Only the order changes.
    if (dataSet_->Active())
        layoutChanged(dataSet_);
}

VarType TField::ValueType() const
{
    return valueTypeOf(dataType_);
}

Variant TField::Convert(const Variant &value) const
{
    if (value.IsClear())
        return value;
    const VarType target = ValueType();
    if (target == VarType::Unassigned || target == value.Type())
        return value;
    try {
        if (target == VarType::DateTime && value.IsString()) {
            TDateTime dt;
            if (!TryStrToDateTime(value.ToString(), dt))
                throw EConvertError(QString());
            return Variant::FromDateTime(dt);
        }
        if (target == VarType::Boolean && value.IsString()) {
            bool b;
            if (!TryStrToBool(value.ToString(), b))
                throw EConvertError(QString());
            return b;
        }
        if (target == VarType::Integer && value.IsString()) {
            qint64 i;
            if (!TryStrToInt64(value.ToString(), i))
                throw EConvertError(QString());
            return i;
        }
        return value.AsType(target);
    } catch (const Exception &) {
        DatabaseError(DBConsts::SFieldTypeMismatch().arg(DisplayName(), Variant::TypeName(target),
                                                            Variant::TypeName(value.Type())),
                      dataSet_);
    }
}

const Variant &TField::ValueRef(Variant &scratch) const
{
    if (validating_)
        return *validating_;
    TDataSet *ds = dataSet_;
    if (!ds) {
        scratch = Variant::Null();
        return scratch;
    }
    return ds->FieldValueRef(const_cast<TField *>(this), scratch);
}

Variant TField::Value() const
{
    Variant scratch;
    const Variant &v = ValueRef(scratch);
    return &v == &scratch ? scratch : v;
}

void TField::SetValue(const Variant &value)
{
    if (!dataSet_)
        DatabaseError(DBConsts::SFieldValueError().arg(DisplayName()), nullptr);
    if (value.IsUnassigned() || value.IsNull()) {
        dataSet_->SetFieldData(this, Variant::Null());
        return;
    }
    Variant typed = Convert(value);
    if (ValueType() == VarType::Integer) {
        const IntRange r = typeRange(dataType_);
        const qint64 v = typed.ToInt64();
        if (v < r.min || v > r.max)
            RangeError(double(v), double(r.min), double(r.max));
    }
    dataSet_->SetFieldData(this, typed);
}

QString TField::AsString() const
{
    Variant scratch;
    const Variant &v = ValueRef(scratch);
    return v.IsClear() ? QString() : v.ToString();
}

void TField::SetAsString(const QString &text)
{
    if (text.isEmpty() && ValueType() != VarType::String) {
        Clear();
        return;
    }
    SetValue(text);
}

template<typename T, typename F>
T TField::readAs(const char *typeName, F convert) const
{
    Variant scratch;
    const Variant &v = ValueRef(scratch);
    if (v.IsClear())
        return T();
    try {
        return convert(v);
    } catch (const Exception &) {
        AccessError(QString::fromLatin1(typeName));
    }
}

int TField::AsInteger() const
{
    const qint64 v = AsLargeInt();
    if (v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max())
        AccessError(QStringLiteral("Integer"));
    return int(v);
}

qint64 TField::AsLargeInt() const
{
    return readAs<qint64>("Integer", [](const Variant &v) { return v.ToInt64(); });
}

void TField::SetAsLargeInt(qint64 v)
{
    SetValue(Variant(v));
}

double TField::AsFloat() const
{
    return readAs<double>("Float", [](const Variant &v) { return v.ToDouble(); });
}

void TField::SetAsFloat(double v)
{
    SetValue(Variant(v));
}

Currency TField::AsCurrency() const
{
    return readAs<Currency>("Currency", [](const Variant &v) { return v.ToCurrency(); });
}

void TField::SetAsCurrency(Currency v)
{
    SetValue(Variant(v));
}

TDateTime TField::AsDateTime() const
{
    return readAs<TDateTime>("DateTime", [](const Variant &v) { return v.ToDateTime(); });
}

void TField::SetAsDateTime(TDateTime v)
{
    SetValue(Variant::FromDateTime(v));
}

bool TField::AsBoolean() const
{
    return readAs<bool>("Boolean", [](const Variant &v) { return v.ToBool(); });
}

void TField::SetAsBoolean(bool v)
{
    SetValue(Variant(v));
}

QByteArray TField::AsBytes() const
{
    return Value().ToBytes();
}

void TField::SetText(const QString &text)
{
    if (OnSetText)
        OnSetText(this, text);
    else
        SetAsString(text);
}

QString TField::GetText(bool displayText) const
{
    QString text;
    if (OnGetText) {
        OnGetText(const_cast<TField *>(this), text, displayText);
        return text;
    }
    return AsString();
}

Variant TField::OldValue() const
{
    if (!dataSet_ || !dataSet_->Active())
        return Variant::Null();
    TDataSet::TempState old(dataSet_, dsOldValue, nullptr);
    return Value();
}

bool TField::CanModify() const
{
    return !readOnly_ && dataSet_ && fieldKind_ == fkData && dataSet_->CanModify();
}

bool TField::IsBlob() const
{
    switch (dataType_) {
    case ftBlob: case ftMemo: case ftGraphic: case ftFmtMemo: case ftWideMemo: case ftOraBlob: case ftOraClob:
    case ftTypedBinary:
        return true;
    default:
        return false;
    }
}

void TField::FocusControl()
{
    if (dataSet_ && dataSet_->Active())
        dataSet_->DataEvent(deFocusControl, reinterpret_cast<qintptr>(this));
}

void TField::Validate(const Variant &value)
{
    if (!OnValidate)
        return;
    validating_ = &value;
    try {
        OnValidate(this);
    } catch (...) {
        validating_ = nullptr;
        throw;
    }
    validating_ = nullptr;
}

void TField::Change()
{
    Fire(OnChange, this);
}

void TField::ParseError(const QString &message, const QString &text) const
{
    DatabaseError(message.arg(text, DisplayName()), dataSet_);
}

void TField::AccessError(const QString &typeName) const
{
    DatabaseError(DBConsts::SFieldAccessError().arg(DisplayName(), typeName), dataSet_);
}

void TField::RangeError(double value, double min, double max) const
{
    DatabaseError(DBConsts::SFieldRangeError().arg(FloatToStr(value), DisplayName(), FloatToStr(min), FloatToStr(max)),
                  dataSet_);
}

// ---- text ----

TStringField::TStringField(QObject *parent) : TField(parent)
{
    SetDataType(ftString);
    SetSize(20);
}

TWideStringField::TWideStringField(QObject *parent) : TStringField(parent)
{
    SetDataType(ftWideString);
}

TGuidField::TGuidField(QObject *parent) : TStringField(parent)
{
    SetDataType(ftGuid);
    SetSize(38);
}

// ---- numbers ----

TNumericField::TNumericField(QObject *parent) : TField(parent)
{
    SetAlignment(taRightJustify);
}

void TNumericField::SetDisplayFormat(const QString &f)
{
    displayFormat_ = f;
    layoutChanged(DataSet());
}

QString TNumericField::NumberText(bool displayText, bool currency,
                                 QString (*plain)(const Variant &, const TNumericField *)) const
{
    if (OnGetText || !displayFormat_.isEmpty() || !editFormat_.isEmpty())
        return TNumericField::GetText(displayText);
    const Variant v = Value();
    if (v.IsClear())
        return QString();
    if (currency && displayText)
        return Format(QStringLiteral("%m"), {v.ToDouble()});
    return plain(v, this);
}

QString TNumericField::GetText(bool displayText) const
{
    if (OnGetText)
        return TField::GetText(displayText);
    const QString format = displayText ? displayFormat_ : editFormat_;
    const Variant v = Value();
    if (format.isEmpty() || v.IsClear())
        return TField::GetText(displayText);
    try {
        return Format(format, {v});
    } catch (const EConvertError &) {
        return TField::GetText(displayText);
    }
}

TIntegerField::TIntegerField(QObject *parent) : TIntegerField(ftInteger, parent) {}

TIntegerField::TIntegerField(TFieldType type, QObject *parent) : TNumericField(parent)
{
    SetDataType(type);
}

int TIntegerField::DefaultWidth() const
{
    switch (DataType()) {
    case ftSmallint: return 6;
    case ftShortint: return 4;
    case ftByte: return 3;
    case ftWord: return 5;
    case ftLongWord: return 10;
    case ftLargeint: return 15;
    default: return 11;
    }
}

void TIntegerField::CheckRange(qint64 v) const
{
    if ((minValue_ != 0 || maxValue_ != 0) && (v < minValue_ || v > maxValue_))
        RangeError(double(v), double(minValue_), double(maxValue_));
}

void TIntegerField::SetAsLargeInt(qint64 v)
{
    CheckRange(v);
    TField::SetAsLargeInt(v);
}

void TIntegerField::SetAsString(const QString &text)
{
    setFromText<qint64>(text, DBConsts::SInvalidIntegerValue(),
                        [](const QString &t, qint64 &v) { return TryStrToInt64(t, v); },
                        [this](qint64 v) { SetAsLargeInt(v); });
}

TAutoIncField::TAutoIncField(QObject *parent) : TIntegerField(ftAutoInc, parent) {}

TFloatField::TFloatField(QObject *parent) : TFloatField(ftFloat, parent) {}

TFloatField::TFloatField(TFieldType type, QObject *parent) : TNumericField(parent)
{
    SetDataType(type);
}

void TFloatField::SetAsFloat(double v)
{
    if ((minValue_ != 0 || maxValue_ != 0) && (v < minValue_ || v > maxValue_))
        RangeError(v, minValue_, maxValue_);
    TField::SetAsFloat(v);
}

void TFloatField::SetAsString(const QString &text)
{
    setFromText<double>(text, DBConsts::SInvalidFloatValue(),
                        [](const QString &t, double &v) { return TryStrToFloat(t, v); },
                        [this](double v) { SetAsFloat(v); });
}

QString TFloatField::GetText(bool displayText) const
{
    return NumberText(displayText, currency_, [](const Variant &v, const TNumericField *f) {
        return FormatGeneral(v.ToDouble(), static_cast<const TFloatField *>(f)->precision_,
                             FormatSettings().DecimalSeparator);
    });
}

TCurrencyField::TCurrencyField(QObject *parent) : TFloatField(ftCurrency, parent)
{
    SetCurrency(true);
}

TBCDField::TBCDField(QObject *parent) : TBCDField(ftBCD, parent) {}

TBCDField::TBCDField(TFieldType type, QObject *parent) : TNumericField(parent)
{
    SetDataType(type);
    SetSize(4);
}

void TBCDField::SetAsString(const QString &text)
{
    setFromText<Currency>(text, DBConsts::SInvalidFloatValue(),
                          [](const QString &t, Currency &v) { return TryStrToCurr(t, v); },
                          [this](Currency v) { SetAsCurrency(v); });
}

QString TBCDField::GetText(bool displayText) const
{
    return NumberText(displayText, currency_,
                      [](const Variant &v, const TNumericField *) { return CurrToStr(v.ToCurrency()); });
}

// ---- other scalars ----

TBooleanField::TBooleanField(QObject *parent) : TField(parent)
{
    SetDataType(ftBoolean);
    SetDisplayValues(QStringLiteral("True;False"));
}

void TBooleanField::SetDisplayValues(const QString &values)
{
    displayValues_ = values;
    const qsizetype semi = values.indexOf(QLatin1Char(';'));
    trueText_ = semi < 0 ? values : values.left(semi);
    falseText_ = semi < 0 ? QString() : values.mid(semi + 1);
    layoutChanged(DataSet());
}

QString TBooleanField::AsString() const
{
    const Variant v = Value();
    if (v.IsClear())
        return QString();
    return v.ToBool() ? trueText_ : falseText_;
}

void TBooleanField::SetAsString(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty()) {
        Clear();
        return;
    }
    // A leading part of a display value will do ("T", "fal").
    if (!falseText_.isEmpty() && falseText_.startsWith(t, Qt::CaseInsensitive))
        SetAsBoolean(false);
    else if (!trueText_.isEmpty() && trueText_.startsWith(t, Qt::CaseInsensitive))
        SetAsBoolean(true);
    else {
        bool b;
        if (!TryStrToBool(t, b))
            DatabaseError(DBConsts::SInvalidBoolValue().arg(text, DisplayName()), DataSet());
        SetAsBoolean(b);
    }
}

TDateTimeField::TDateTimeField(QObject *parent) : TDateTimeField(ftDateTime, parent) {}

TDateTimeField::TDateTimeField(TFieldType type, QObject *parent) : TField(parent)
{
    SetDataType(type);
}

int TDateTimeField::DefaultWidth() const
{
    return DataType() == ftDate || DataType() == ftTime ? 10 : 18;
}

void TDateTimeField::SetDisplayFormat(const QString &f)
{
    displayFormat_ = f;
    layoutChanged(DataSet());
}

QString TDateTimeField::AsString() const
{
    const Variant v = Value();
    if (v.IsClear())
        return QString();
    const TDateTime dt = v.ToDateTime();
    switch (DataType()) {
    case ftDate: return DateToStr(dt);
    case ftTime: return TimeToStr(dt);
    default: return DateTimeToStr(dt);
    }
}

void TDateTimeField::SetAsString(const QString &text)
{
    const TFieldType type = DataType();
    setFromText<TDateTime>(
        text, DBConsts::SInvalidDateValue(),
        [type](const QString &t, TDateTime &v) {
            return type == ftDate ? TryStrToDate(t, v) : type == ftTime ? TryStrToTime(t, v) : TryStrToDateTime(t, v);
        },
        [this](TDateTime v) { SetAsDateTime(v); });
}

QString TDateTimeField::GetText(bool displayText) const
{
    if (OnGetText || !displayText || displayFormat_.isEmpty())
        return TField::GetText(displayText);
    const Variant v = Value();
    return v.IsClear() ? QString() : FormatDateTime(displayFormat_, v.ToDateTime());
}

// ---- binary and large values ----

TBinaryField::TBinaryField(TFieldType type, QObject *parent) : TField(parent)
{
    SetDataType(type);
    SetSize(16);
}

QString TBinaryField::AsString() const
{
    return QString::fromLatin1(AsBytes().toHex());
}

TBlobField::TBlobField(TFieldType type, QObject *parent) : TField(parent)
{
    SetDataType(type);
}

QString TBlobField::GetText(bool displayText) const
{
    if (OnGetText || !displayText)
        return TField::GetText(displayText);
    return DisplayTextOf(IsNull());
}

QString TBlobField::DisplayTextOf(bool null) const
{
    QString name;
    switch (DataType()) {
    case ftMemo: name = QStringLiteral("Memo"); break;
    case ftWideMemo: name = QStringLiteral("WideMemo"); break;
    case ftFmtMemo: name = QStringLiteral("FmtMemo"); break;
    case ftGraphic: name = QStringLiteral("Graphic"); break;
    default: name = QStringLiteral("Blob"); break;
    }
    return QLatin1Char('(') + (null ? name.toLower() : name.toUpper()) + QLatin1Char(')');
}

TVariantField::TVariantField(QObject *parent) : TField(parent)
{
    SetDataType(ftVariant);
}

// ---- structured fields ----

TObjectField::TObjectField(TFieldType type, QObject *parent) : TField(parent)
{
    SetDataType(type);
    isObjectField_ = true;
}

TObjectField::~TObjectField()
{
    const QList<TField *> children = children_;
    children_.clear();
    for (TField *child : children) {
        child->parentField_ = nullptr;
        child->dataSet_ = nullptr;
        if (child->parent() == this || child->parent() == parent())
            delete child;
    }
    if (DataSet())
        DataSet()->rebuildFieldList();
}

void TObjectField::AddField(TField *child)
{
    CheckInactive();
    children_.append(child);
    child->parentField_ = this;
    child->dataSet_ = DataSet();
    if (DataSet())
        DataSet()->rebuildFieldList();
}

void TObjectField::RemoveField(TField *child)
{
    children_.removeOne(child);
    child->parentField_ = nullptr;
    if (DataSet())
        DataSet()->rebuildFieldList();
}

QString TObjectField::AsString() const
{
    QStringList parts;
    for (TField *child : children_)
        parts << child->AsString();
    return QLatin1Char('(') + parts.join(QStringLiteral(", ")) + QLatin1Char(')');
}

QString TObjectField::GetText(bool displayText) const
{
    if (OnGetText)
        return TField::GetText(displayText);
    QStringList parts;
    for (TField *child : children_)
        parts << child->DisplayText();
    return QLatin1Char('(') + parts.join(QStringLiteral(", ")) + QLatin1Char(')');
}

TField *CreateFieldOfType(TFieldType type, QObject *parent)
{
    switch (type) {
    case ftString: return new TStringField(parent);
    case ftFixedChar: { auto *f = new TStringField(parent); f->SetFixedChar(true); return f; }
    case ftWideString: return new TWideStringField(parent);
    case ftFixedWideChar: { auto *f = new TWideStringField(parent); f->SetDataType(ftFixedWideChar); return f; }
    case ftGuid: return new TGuidField(parent);
    case ftSmallint: return new TSmallintField(parent);
    case ftShortint: return new TShortintField(parent);
    case ftByte: return new TByteField(parent);
    case ftInteger: return new TIntegerField(parent);
    case ftWord: return new TWordField(parent);
    case ftLongWord: return new TLongWordField(parent);
    case ftLargeint: return new TLargeintField(parent);
    case ftAutoInc: return new TAutoIncField(parent);
    case ftBoolean: return new TBooleanField(parent);
    case ftFloat: return new TFloatField(parent);
    case ftCurrency: return new TCurrencyField(parent);
    case ftExtended: return new TExtendedField(parent);
    case ftSingle: return new TSingleField(parent);
    case ftBCD: return new TBCDField(parent);
    case ftFMTBcd: return new TFMTBCDField(parent);
    case ftDate: return new TDateField(parent);
    case ftTime: return new TTimeField(parent);
    case ftDateTime: return new TDateTimeField(parent);
    case ftTimeStamp: return new TSQLTimeStampField(parent);
    case ftBytes: return new TBytesField(parent);
    case ftVarBytes: return new TVarBytesField(parent);
    case ftBlob: return new TBlobField(parent);
    case ftMemo: return new TMemoField(parent);
    case ftWideMemo: return new TWideMemoField(parent);
    case ftFmtMemo: { auto *f = new TBlobField(parent); f->SetBlobType(ftFmtMemo); return f; }
    case ftGraphic: return new TGraphicField(parent);
    case ftVariant: return new TVariantField(parent);
    case ftADT: return new TADTField(parent);
    case ftArray: return new TArrayField(parent);
    case ftReference: return new TReferenceField(parent);
    case ftDataSet: return new TDataSetField(parent);
    default: return nullptr;
    }
}

} // namespace qdb
