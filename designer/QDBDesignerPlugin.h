#pragma once

#include "QDBDesignerIcons.h"

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <functional>

namespace qdb {

// What Designer needs to know of one published widget.
struct TDesignerWidgetInfo
{
    QString className;
    QString includeFile;
    QString objectName;
    QString toolTip;
    TDesignerIcon icon;
    QSize size;
    std::function<QWidget *(QWidget *)> create;
    // What Designer is told once about the widget (its extensions).
    std::function<void(QDesignerFormEditorInterface *)> setUp = {};
};

class TQDBDesignerWidget : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    TQDBDesignerWidget(TDesignerWidgetInfo info, QObject *parent);

    QString name() const override { return info_.className; }
    QString group() const override;
    QString toolTip() const override { return info_.toolTip; }
    QString whatsThis() const override { return info_.toolTip; }
    QString includeFile() const override { return info_.includeFile; }
    QIcon icon() const override { return DesignerIcon(info_.icon); }
    bool isContainer() const override { return false; }
    QWidget *createWidget(QWidget *parent) override { return info_.create(parent); }
    bool isInitialized() const override { return initialized_; }
    void initialize(QDesignerFormEditorInterface *core) override;
    QString domXml() const override;

private:
    TDesignerWidgetInfo info_;
    bool initialized_ = false;
};

class TQDBDesignerWidgets : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit TQDBDesignerWidgets(QObject *parent = nullptr);
    QList<QDesignerCustomWidgetInterface *> customWidgets() const override { return widgets_; }

private:
    QList<QDesignerCustomWidgetInterface *> widgets_;
};

} // namespace qdb
