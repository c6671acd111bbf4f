#include "QDBDesignerPlugin.h"
#include "QDBDesignerTaskMenu.h"

#include "data/QDBNavigator.h"
#include "editors/QDBDataEditor.h"
#include "grid/QDBGrid.h"

#include <QCoreApplication>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QExtensionManager>

namespace qdb {

namespace {

template<typename W>
std::function<QWidget *(QWidget *)> maker()
{
    return [](QWidget *parent) -> QWidget * { return new W(parent); };
}

} // namespace

TQDBDesignerWidget::TQDBDesignerWidget(TDesignerWidgetInfo info, QObject *parent) : QObject(parent), info_(std::move(info))
{
}

QString TQDBDesignerWidget::group() const
{
    return QCoreApplication::translate("qdb::TQDBDesignerWidgets", "Data-Aware Widgets");
}

void TQDBDesignerWidget::initialize(QDesignerFormEditorInterface *core)
{
    if (initialized_)
        return;
    if (core && info_.setUp)
        info_.setUp(core);
    initialized_ = true;
}

QString TQDBDesignerWidget::domXml() const
{
    return QStringLiteral("<ui language=\"c++\"><widget class=\"%1\" name=\"%2\">"
                          "<property name=\"geometry\"><rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect></property>"
                          "</widget></ui>")
        .arg(info_.className, info_.objectName)
        .arg(info_.size.width())
        .arg(info_.size.height());
}

TQDBDesignerWidgets::TQDBDesignerWidgets(QObject *parent) : QObject(parent)
{
    const auto tr = [](const char *text) { return QCoreApplication::translate("qdb::TQDBDesignerWidgets", text); };
    const QList<TDesignerWidgetInfo> infos{
        {QStringLiteral("qdb::TQDBGrid"), QStringLiteral("grid/QDBGrid.h"), QStringLiteral("dbGrid"),
         tr("A grid of a data set's records: titles, totals, sorting, filtering and search"), TDesignerIcon::Grid,
         QSize(400, 200), maker<TQDBGrid>(), [](QDesignerFormEditorInterface *core) {
             QExtensionManager *manager = core->extensionManager();
             manager->registerExtensions(new TQDBGridTaskMenuFactory(manager), Q_TYPEID(QDesignerTaskMenuExtension));
         }},
        {QStringLiteral("qdb::TQDBEditor"), QStringLiteral("editors/QDBDataEditor.h"), QStringLiteral("dbEditor"),
         tr("An editor of one field, with lists, a calendar and a calculator"), TDesignerIcon::Editor, QSize(160, 24),
         maker<TQDBEditor>()},
        {QStringLiteral("qdb::TQDBColumn"), QStringLiteral("editors/QDBDataEditor.h"), QStringLiteral("dbColumn"),
         tr("An editor of one column of a grid, with the column's lists and settings"), TDesignerIcon::ColumnEditor,
         QSize(160, 24), maker<TQDBColumn>()},
        {QStringLiteral("qdb::TQDBNavigator"), QStringLiteral("data/QDBNavigator.h"), QStringLiteral("dbNavigator"),
         tr("Buttons that move through a data set and edit it"), TDesignerIcon::Navigator, QSize(240, 25),
         maker<TQDBNavigator>()},
        {QStringLiteral("qdb::TQDBText"), QStringLiteral("data/QDBNavigator.h"), QStringLiteral("dbText"),
         tr("A label showing a field"), TDesignerIcon::Text, QSize(120, 17), maker<TQDBText>()},
        {QStringLiteral("qdb::TQDBCheckBox"), QStringLiteral("data/QDBNavigator.h"), QStringLiteral("dbCheckBox"),
         tr("A check box bound to a field"), TDesignerIcon::CheckBox, QSize(120, 17), maker<TQDBCheckBox>()},
        {QStringLiteral("qdb::TQDBRadioGroup"), QStringLiteral("data/QDBNavigator.h"), QStringLiteral("dbRadioGroup"),
         tr("Radio buttons choosing a field's value"), TDesignerIcon::RadioGroup, QSize(160, 100),
         maker<TQDBRadioGroup>()},
    };
    for (const TDesignerWidgetInfo &info : infos)
        widgets_ << new TQDBDesignerWidget(info, this);
}

} // namespace qdb
