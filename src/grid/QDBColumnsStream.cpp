// Column files: the grid's columns and its sort order written as one component.

#include "QDBColumns.h"
#include "QDBGrid.h"

#include "platform/rtl/Exceptions.h"
#include "platform/rtl/Streaming.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QScopeGuard>

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

// Calls a grid's member with true now and with false when the scope ends, whatever is thrown.
auto gridFlag(TQCustomDBGrid *grid, void (TQCustomDBGrid::*set)(bool))
{
    if (grid)
        (grid->*set)(true);
    return qScopeGuard([grid, set] {
        if (grid)
            (grid->*set)(false);
    });
}

} // namespace

void TQDBGridColumns::SaveToStream(QIODevice &stream)
{
    const auto saving = gridFlag(grid_, &TQCustomDBGrid::SetSavingColumns);
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
    {
        const auto loading = gridFlag(grid_, &TQCustomDBGrid::SetLoadingColumns);
        CollectionUpdateGuard guard(*fresh);
        JsonToComponent(&wrapper, stream.readAll());
    }
    // The columns and their order arrive together: the order is looked at once, after both.
    WithOrderUpdate(grid_, [&] {
        Assign(*fresh);
        if (grid_)
            grid_->SetOrderFields(wrapper.orderFields);
    });
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
