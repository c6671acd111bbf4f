// Column files: the grid's columns and its sort order written as one component.

#include "QDBColumns.h"
#include "QDBGrid.h"

#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Streaming.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <memory>

namespace qdb {

namespace {

// Holds a collection of columns together with an order text while they are streamed.
class TQColumnsWrapper : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qdb::TQDBGridColumns *Columns READ Columns)
    Q_PROPERTY(QString OrderFields MEMBER orderFields)

public:
    explicit TQColumnsWrapper(TQDBGridColumns *columns) : columns_(columns) {}
    TQDBGridColumns *Columns() const { return columns_; }
    QString orderFields;

private:
    TQDBGridColumns *columns_;
};

// Keeps a grid state flag set for the length of a scope, whatever is thrown.
template <void (TQCustomDBGrid::*Set)(bool)>
class GridStateScope
{
public:
    explicit GridStateScope(TQCustomDBGrid *grid) : grid_(grid)
    {
        if (grid_)
            (grid_->*Set)(true);
    }
    ~GridStateScope()
    {
        if (grid_)
            (grid_->*Set)(false);
    }
    GridStateScope(const GridStateScope &) = delete;
    GridStateScope &operator=(const GridStateScope &) = delete;

private:
    TQCustomDBGrid *grid_;
};

class OrderUpdateScope
{
public:
    explicit OrderUpdateScope(TQCustomDBGrid *grid) : grid_(grid)
    {
        if (grid_)
            grid_->BeginOrderUpdate();
    }
    ~OrderUpdateScope()
    {
        if (grid_)
            grid_->EndOrderUpdate();
    }
    OrderUpdateScope(const OrderUpdateScope &) = delete;
    OrderUpdateScope &operator=(const OrderUpdateScope &) = delete;

private:
    TQCustomDBGrid *grid_;
};

} // namespace

void TQDBGridColumns::SaveToStream(QIODevice &stream)
{
    GridStateScope<&TQCustomDBGrid::SetSavingColumns> saving(grid_);
    TQColumnsWrapper wrapper(this);
    if (grid_)
        wrapper.orderFields = grid_->GetOrderFields();
    const QByteArray json = ComponentToJson(&wrapper);
    if (stream.write(json) != json.size())
        throw EWriteError(QCoreApplication::translate("qdb", "Stream write error: %1").arg(stream.errorString()));
}

void TQDBGridColumns::LoadFromStream(QIODevice &stream)
{
    // Read into a fresh collection first so that a bad stream leaves these columns alone.
    auto fresh = std::make_unique<TQDBGridColumns>(grid_);
    TQColumnsWrapper wrapper(fresh.get());
    OrderUpdateScope order(grid_);
    {
        GridStateScope<&TQCustomDBGrid::SetLoadingColumns> loading(grid_);
        CollectionUpdateGuard guard(*fresh);
        JsonToComponent(&wrapper, stream.readAll());
    }
    Assign(*fresh);
    if (grid_)
        grid_->SetOrderFields(wrapper.orderFields);
}

void TQDBGridColumns::SaveToFile(const QString &fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QCoreApplication::translate("qdb", "Cannot create file \"%1\". %2").arg(fileName, file.errorString()));
    SaveToStream(file);
    if (!file.commit())
        throw EWriteError(QCoreApplication::translate("qdb", "Cannot create file \"%1\". %2").arg(fileName, file.errorString()));
}

void TQDBGridColumns::LoadFromFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EFOpenError(QCoreApplication::translate("qdb", "Cannot open file \"%1\". %2").arg(fileName, file.errorString()));
    LoadFromStream(file);
}

} // namespace qdb

#include "QDBColumnsStream.moc"
