#pragma once

// Small published classes that the property access and streaming tests drive.

#include "platform/rtl/Collection.h"
#include "platform/rtl/Set.h"
#include "platform/rtl/Strings.h"

#include <QColor>
#include <QFont>
#include <QObject>

namespace qdb::test {

Q_NAMESPACE
enum TCommandType { ctTable, ctQuery, ctStoredProc };
Q_ENUM_NS(TCommandType)
enum TTestOption { toFirst, toSecond, toThird };
Q_ENUM_NS(TTestOption)
using TTestOptions = Set<TTestOption>;

class TTestConnection : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Driver READ GetDriver WRITE SetDriver)

public:
    using QObject::QObject;
    QString GetDriver() const { return driver_; }
    void SetDriver(const QString &d) { driver_ = d; }

private:
    QString driver_;
};

// A property object owned by its component: stores only what differs from its defaults.
class TTestTitle : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ GetCaption WRITE SetCaption)
    Q_PROPERTY(int Height READ GetHeight WRITE SetHeight)

public:
    using QObject::QObject;
    QString GetCaption() const { return caption_; }
    void SetCaption(const QString &c) { caption_ = c; }
    int GetHeight() const { return height_; }
    void SetHeight(int h) { height_ = h; }
    Q_INVOKABLE bool IsCaptionStored() const { return !caption_.isEmpty(); }
    Q_INVOKABLE bool IsHeightStored() const { return height_ != 20; }

private:
    QString caption_;
    int height_ = 20;
};

class TTestItem : public TCollectionItem
{
    Q_OBJECT
    Q_PROPERTY(QString FieldName READ GetFieldName WRITE SetFieldName)
    Q_PROPERTY(int Width READ GetWidth WRITE SetWidth)

public:
    using TCollectionItem::TCollectionItem;
    QString GetFieldName() const { return fieldName_; }
    void SetFieldName(const QString &n) { fieldName_ = n; Changed(false); }
    int GetWidth() const { return width_; }
    void SetWidth(int w) { width_ = w; Changed(false); }
    Q_INVOKABLE bool IsWidthStored() const { return width_ != 64; }

private:
    QString fieldName_;
    int width_ = 64;
};

// Records what the collection reports.
class TTestItems : public TCollectionOf<TTestItem>
{
    Q_OBJECT

public:
    using TCollectionOf<TTestItem>::TCollectionOf;
    QList<TTestItem *> updates;
    QList<TCollectionNotification> notifications;

protected:
    void Update(TCollectionItem *item) override { updates.append(static_cast<TTestItem *>(item)); }
    void Notify(TCollectionItem *, TCollectionNotification action) override { notifications.append(action); }
};

class TTestDataSet : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString CommandText READ GetCommandText WRITE SetCommandText)
    Q_PROPERTY(qdb::test::TCommandType CommandType READ GetCommandType WRITE SetCommandType)
    Q_PROPERTY(qdb::test::TTestOptions Options READ GetOptions WRITE SetOptions)
    Q_PROPERTY(bool Active READ GetActive WRITE SetActive)
    Q_PROPERTY(int MaxRows READ GetMaxRows WRITE SetMaxRows)
    Q_PROPERTY(double Ratio READ GetRatio WRITE SetRatio)
    Q_PROPERTY(qint64 Big READ GetBig WRITE SetBig)
    Q_PROPERTY(QColor Color READ GetColor WRITE SetColor)
    Q_PROPERTY(QFont Font READ GetFont WRITE SetFont)
    Q_PROPERTY(qdb::TStrings *SQL READ GetSQL)
    Q_PROPERTY(qdb::test::TTestTitle *Title READ GetTitle)
    Q_PROPERTY(qdb::test::TTestItems *Items READ GetItems)
    Q_PROPERTY(qdb::test::TTestConnection *Connection READ GetConnection WRITE SetConnection)
    Q_PROPERTY(QString Transient READ GetTransient WRITE SetTransient STORED false)

public:
    explicit TTestDataSet(QObject *parent = nullptr)
        : QObject(parent), sql_(new TStringList(this)), title_(new TTestTitle(this)), items_(new TTestItems(this))
    {
    }

    QString GetCommandText() const { return commandText_; }
    void SetCommandText(const QString &t) { commandText_ = t; }
    TCommandType GetCommandType() const { return commandType_; }
    void SetCommandType(TCommandType t) { commandType_ = t; }
    TTestOptions GetOptions() const { return options_; }
    void SetOptions(TTestOptions o) { options_ = o; }
    bool GetActive() const { return active_; }
    void SetActive(bool a) { active_ = a; }
    int GetMaxRows() const { return maxRows_; }
    void SetMaxRows(int m) { maxRows_ = m; }
    double GetRatio() const { return ratio_; }
    void SetRatio(double r) { ratio_ = r; }
    qint64 GetBig() const { return big_; }
    void SetBig(qint64 b) { big_ = b; }
    QColor GetColor() const { return color_; }
    void SetColor(const QColor &c) { color_ = c; }
    QFont GetFont() const { return font_; }
    void SetFont(const QFont &f) { font_ = f; }
    TStrings *GetSQL() const { return sql_; }
    TTestTitle *GetTitle() const { return title_; }
    TTestItems *GetItems() const { return items_; }
    TTestConnection *GetConnection() const { return connection_; }
    void SetConnection(TTestConnection *c) { connection_ = c; }
    QString GetTransient() const { return transient_; }
    void SetTransient(const QString &t) { transient_ = t; }

    Q_INVOKABLE bool IsMaxRowsStored() const { return maxRows_ != 0; }
    Q_INVOKABLE void BeginLoading() { ++loadingBegun; }
    Q_INVOKABLE void Loaded() { ++loadedCalls; }
    int loadingBegun = 0;
    int loadedCalls = 0;

private:
    QString commandText_;
    TCommandType commandType_ = ctTable;
    TTestOptions options_;
    bool active_ = false;
    int maxRows_ = 0;
    double ratio_ = 0;
    qint64 big_ = 0;
    QColor color_ = Qt::white;
    QFont font_;
    TStringList *sql_;
    TTestTitle *title_;
    TTestItems *items_;
    TTestConnection *connection_ = nullptr;
    QString transient_;
};

// A descendant with its own class name, for ancestry tests.
class TTestQuery : public TTestDataSet
{
    Q_OBJECT

public:
    using TTestDataSet::TTestDataSet;
};

inline void RegisterTestTypes()
{
    RegisterSetType<TTestOption>();
}

} // namespace qdb::test
