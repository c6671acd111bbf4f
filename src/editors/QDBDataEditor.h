#pragma once

// The free-standing editors: an edit box bound to a field of a data source (TQDBEditor), or
// to a column of a grid (TQDBColumn), with the button, lists and keys of the cell editor.

#include "QDBEditor.h"

#include "grid/QDBGrid.h"
#include "platform/db/DataSource.h"

#include <QLabel>

namespace qdb {

// An editor bound to a field through a data link of its own. Without focus it shows the
// field's display text, with focus the text it edits; both pass through DoGetText. What is
// typed goes to the field on Return or when focus leaves, through DoSetText; a text the
// field refuses is reported and stays in the editor. Esc gives back the field's value.
class TQDBDataEditor : public TQDBGridEditor
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSource *DataSource READ GetDataSource WRITE SetDataSource)
    Q_PROPERTY(QString DataField READ GetDataField WRITE SetDataField)
    Q_PROPERTY(bool ReadOnly READ GetReadOnly WRITE SetReadOnly)

public:
    explicit TQDBDataEditor(QWidget *parent = nullptr);
    ~TQDBDataEditor() override;

    TDataSource *GetDataSource() const { return link_.DataSource(); }
    void SetDataSource(TDataSource *source);
    QString GetDataField() const { return link_.FieldName(); }
    void SetDataField(const QString &name);
    TField *Field() const { return link_.Field(); }
    bool GetReadOnly() const { return readOnly_; }
    void SetReadOnly(bool on);

    // The text shown without focus, and the text edited.
    QString GetText() const;
    QString GetEditText() const;
    // Writes a text to the field as if typed and confirmed; raises what the field raises.
    void SetEditText(const QString &text);
    // Writes what was typed to the field now; false, with the reason shown and the text
    // kept, when the field refuses it.
    bool UpdateRecord();

    // Shows the field's value again, as the focus says.
    virtual void DataRefresh();
    virtual TAlignment DefaultAlignment() const;
    virtual void DoGetText(QString &text, bool displayText);
    virtual void DoSetText(QString &text);
    virtual void FocusChanged(bool focused);
    // The field's value as text to edit, before DoGetText.
    virtual QString GetStoredText() const;
    // The field's value as text to show, before DoGetText.
    virtual QString GetStoredDisplayText() const;
    // Whether the field sets no bound on the length of its text.
    virtual bool GetUnlimited() const;
    virtual void RecordChanged(TField *field);
    // Takes bounds, mask and read-only state from the field again.
    virtual void UpdateEditor();
    // Without a handler, the button of a text field opens its text in several lines.
    void EditButtonClick() override;

    TEditorGetTextEvent OnGetText;
    TEditorSetTextEvent OnSetText;
    TEditorListDropDownEvent OnListDropDown;
    TEditorListCloseUpEvent OnListCloseUp;

protected:
    TFieldDataLink *DataLink() { return &link_; }
    // The data can be written: the link is active and not read-only.
    bool DataLinkWritable() const { return link_.Active() && !link_.ReadOnly(); }
    // Puts the data set in edit mode; false where the field or the editor is read-only.
    bool CanEditModify() override;
    void ApplyListValue(QObject *list, Variant &value, bool &accept) override;
    void ListDropDown(QObject *list) override;
    // Stores a text the user confirmed; the custom editor maps list texts to values.
    virtual void StoreText(const QString &text);
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    // Whether a key would change the text: typing, deleting, cutting, pasting, undoing.
    static bool changesText(QKeyEvent *event);
    void showValue();

    TFieldDataLink link_;
    bool readOnly_ = false;
    bool focused_ = false;
    bool startingEdit_ = false;
};

// The caption an editor carries with it.
class TQDBEditorLabel : public QLabel
{
    Q_OBJECT

public:
    explicit TQDBEditorLabel(QWidget *editor);
};

// An editor with a caption label that follows it: placed by LabelPosition and LabelSpacing
// whenever the editor moves or resizes, shown with it while LabelVisible, enabled with it.
class TQDBLabeledEditor : public TQDBDataEditor
{
    Q_OBJECT
    Q_PROPERTY(qdb::QDBEditorTypes::TLabelPosition LabelPosition READ GetLabelPosition WRITE SetLabelPosition)
    Q_PROPERTY(int LabelSpacing READ GetLabelSpacing WRITE SetLabelSpacing)
    Q_PROPERTY(bool LabelVisible READ GetLabelVisible WRITE SetLabelVisible)

public:
    explicit TQDBLabeledEditor(QWidget *parent = nullptr);
    ~TQDBLabeledEditor() override;

    TQDBEditorLabel *EditorLabel() const { return label_; }
    TLabelPosition GetLabelPosition() const { return labelPosition_; }
    void SetLabelPosition(TLabelPosition position);
    int GetLabelSpacing() const { return labelSpacing_; }
    void SetLabelSpacing(int spacing);
    bool GetLabelVisible() const { return labelVisible_; }
    void SetLabelVisible(bool on);
    // Puts the label beside the editor as the position and spacing say.
    void PlaceLabel();

protected:
    virtual TQDBEditorLabel *CreateEditorLabel();
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void followEditor();

    TQDBEditorLabel *label_ = nullptr;
    TLabelPosition labelPosition_ = lpAbove;
    int labelSpacing_ = 3;
    bool labelVisible_ = false;
};

// An editor with lists of its own: a pick list, lookup settings, the button style. They are
// kept in a column that belongs to no grid, so the lists work as a grid column's do.
class TQDBCustomEditor : public TQDBLabeledEditor
{
    Q_OBJECT
    Q_PROPERTY(qdb::QDBEditorTypes::TEditorButtonStyle ButtonStyle READ GetButtonStyle WRITE SetButtonStyle)
    Q_PROPERTY(qdb::TStrings *PickList READ GetPickList)
    Q_PROPERTY(qdb::TStrings *PickText READ GetPickText)
    Q_PROPERTY(qdb::TDataSet *LookupDataSet READ GetLookupDataSet WRITE SetLookupDataSet)
    Q_PROPERTY(QString KeyField READ GetKeyField WRITE SetKeyField)
    Q_PROPERTY(QString LookupKeyField READ GetLookupKeyField WRITE SetLookupKeyField)
    Q_PROPERTY(QString LookupResultField READ GetLookupResultField WRITE SetLookupResultField)
    Q_PROPERTY(qdb::TStrings *LookupListFields READ GetLookupListFields)
    Q_PROPERTY(QString LookupListTitles READ GetLookupListTitles WRITE SetLookupListTitles)
    Q_PROPERTY(QString LookupListWidths READ GetLookupListWidths WRITE SetLookupListWidths)
    Q_PROPERTY(qdb::QDBGridTypes::TQLookupColumn LookupColumn READ GetLookupColumn STORED false)
    Q_PROPERTY(int DropDownRows READ GetDropDownRows WRITE SetDropDownRows)
    Q_PROPERTY(int DropDownWidth READ GetDropDownWidth WRITE SetDropDownWidth)
    Q_PROPERTY(qdb::TQListOptions ListOptions READ GetListOptions WRITE SetListOptions DESIGNABLE false)
    Q_PROPERTY(qdb::TQPickOptions PickOptions READ GetPickOptions WRITE SetPickOptions DESIGNABLE false)
    Q_PROPERTY(QString PickTextFormat READ GetPickTextFormat WRITE SetPickTextFormat)
    Q_PROPERTY(int PickIndex READ GetPickIndex WRITE SetPickIndex STORED false)
    Q_PROPERTY(QString DelimiterChar READ GetDelimiterChar WRITE SetDelimiterChar)
    Q_PROPERTY(bool DelimiterLine READ GetDelimiterLine WRITE SetDelimiterLine)
    Q_PROPERTY(QString DelimiterText READ GetDelimiterText WRITE SetDelimiterText)
    Q_PROPERTY(bool MultiSelectList READ GetMultiSelectList STORED false)
    Q_PROPERTY(qdb::QDBGridTypes::TMultiSelectText MultiSelectText READ GetMultiSelectText WRITE SetMultiSelectText)
    Q_PROPERTY(qdb::QDBGridTypes::TCalendarDepth CalendarDepth READ GetCalendarDepth WRITE SetCalendarDepth)
    Q_PROPERTY(int ImageMargin READ ImageMargin WRITE SetImageMargin)
    Q_PROPERTY(qdb::TImageList *Images READ Images WRITE SetImages)

public:
    explicit TQDBCustomEditor(QWidget *parent = nullptr);
    ~TQDBCustomEditor() override;

    // The column holding the list settings.
    TQColumn *Settings() const { return settings_; }
    TEditorButtonStyle GetButtonStyle() const;
    void SetButtonStyle(TEditorButtonStyle style);
    TStrings *GetPickList() const;
    TStrings *GetPickText() const;
    TQPickOptions GetPickOptions() const;
    void SetPickOptions(TQPickOptions options);
    TQListOptions GetListOptions() const;
    void SetListOptions(TQListOptions options);
    TDataSet *GetLookupDataSet() const;
    void SetLookupDataSet(TDataSet *dataSet);
    QString GetKeyField() const;
    void SetKeyField(const QString &name);
    QString GetLookupKeyField() const;
    void SetLookupKeyField(const QString &name);
    QString GetLookupResultField() const;
    void SetLookupResultField(const QString &name);
    TStrings *GetLookupListFields() const;
    QString GetLookupListTitles() const { return settings_->GetLookupListTitles(); }
    void SetLookupListTitles(const QString &titles) { settings_->SetLookupListTitles(titles); }
    QString GetLookupListWidths() const { return settings_->GetLookupListWidths(); }
    void SetLookupListWidths(const QString &widths) { settings_->SetLookupListWidths(widths); }
    TQLookupColumn GetLookupColumn() const { return settings_->GetLookupColumn(); }
    int GetDropDownRows() const;
    void SetDropDownRows(int rows);
    int GetDropDownWidth() const { return settings_->GetDropDownWidth(); }
    void SetDropDownWidth(int width) { settings_->SetDropDownWidth(width); }
    QString GetPickTextFormat() const { return settings_->GetPickTextFormat(); }
    void SetPickTextFormat(const QString &format);
    // The pick list item of the field's value, -1 for none; setting it stores that item.
    int GetPickIndex() const;
    void SetPickIndex(int index);
    QString GetDelimiterChar() const { return settings_->GetDelimiterChar(); }
    void SetDelimiterChar(const QString &delimiter);
    bool GetDelimiterLine() const { return settings_->GetDelimiterLine(); }
    void SetDelimiterLine(bool on) { settings_->SetDelimiterLine(on); }
    QString GetDelimiterText() const { return settings_->GetDelimiterText(); }
    void SetDelimiterText(const QString &delimiter);
    TMultiSelectText GetMultiSelectText() const { return settings_->GetMultiSelectText(); }
    void SetMultiSelectText(TMultiSelectText value) { settings_->SetMultiSelectText(value); }
    TCalendarDepth GetCalendarDepth() const { return settings_->GetCalendarDepth(); }
    void SetCalendarDepth(TCalendarDepth depth) { settings_->SetCalendarDepth(depth); }

    TEditorStyle GetEditorStyle() const override;
    const QMetaObject *GetEditorListClass() const override;

    // Whether the field holds several values of the pick list, ticked in its list.
    virtual bool GetMultiSelectList() const;
    // One stored item as shown (display) or edited: its pick text, formatted for display.
    virtual void DoGetItem(QString &text, bool display);
    // One typed item as the value stored.
    virtual void DoSetItem(QString &text);
    // A pick text as PickTextFormat shows it.
    virtual QString FormatText(const QString &text);
    // What stands between the items as they are typed.
    virtual QString GetDelimiter() const;

    // Asked by the calendar for each day it shows.
    TCalcBoldDaysEvent OnCalcBoldDays;

protected:
    QString GetStoredText() const override;
    QString GetStoredDisplayText() const override;
    void StoreText(const QString &text) override;
    void UpdateEditor() override;

private:
    // The field's items as shown or edited.
    QString itemsText(bool display) const;

    TQColumn *settings_;
};

// The free-standing data-aware editor, with its option sets as flags for Designer and uic.
class TQDBEditor : public TQDBCustomEditor
{
    Q_OBJECT
    Q_CLASSINFO("QtTypedFace", "listOptions pickOptions")
    Q_PROPERTY(qdb::QDBGridFlags::TQListOptions listOptions READ listFlags WRITE setListFlags)
    Q_PROPERTY(qdb::QDBGridFlags::TQPickOptions pickOptions READ pickFlags WRITE setPickFlags)

public:
    explicit TQDBEditor(QWidget *parent = nullptr);

private:
    QDBGridFlags::TQListOptions listFlags() const { return QDBGridFlags::ToFlags<QDBGridFlags::TQListOptions>(GetListOptions()); }
    void setListFlags(QDBGridFlags::TQListOptions f) { SetListOptions(QDBGridFlags::FromFlags<TQListOptions>(f)); }
    QDBGridFlags::TQPickOptions pickFlags() const { return QDBGridFlags::ToFlags<QDBGridFlags::TQPickOptions>(GetPickOptions()); }
    void setPickFlags(QDBGridFlags::TQPickOptions f) { SetPickOptions(QDBGridFlags::FromFlags<TQPickOptions>(f)); }
};

// An editor of one column of a grid: the grid's data source and the column's field, and
// every list setting of the column.
class TQDBColumn : public TQDBLabeledEditor
{
    Q_OBJECT
    Q_PROPERTY(qdb::TQCustomDBGrid *DBGrid READ GetDBGrid WRITE SetDBGrid)
    Q_PROPERTY(QString DataColumn READ GetDataColumn WRITE SetDataColumn)

public:
    explicit TQDBColumn(QWidget *parent = nullptr);

    TQCustomDBGrid *GetDBGrid() const { return dbGrid_; }
    void SetDBGrid(TQCustomDBGrid *grid);
    QString GetDataColumn() const { return dataColumn_; }
    void SetDataColumn(const QString &fieldName);
    TEditorStyle GetEditorStyle() const override;
    const QMetaObject *GetEditorListClass() const override;

protected:
    QString GetStoredText() const override;
    QString GetStoredDisplayText() const override;
    void StoreText(const QString &text) override;

private:
    void bind();

    QPointer<TQCustomDBGrid> dbGrid_;
    QString dataColumn_;
};

} // namespace qdb
