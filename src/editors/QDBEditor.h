#pragma once

// The edit boxes: the grid's cell editor and the free-standing data-aware editors share one
// family of masked line edits with a button at the right edge and an image at the left.

#include "QDBEditorTypes.h"

#include "platform/rtl/Events.h"

#include <QLineEdit>
#include <QPointer>

class QMenu;

namespace qdb {

class TQColumn;
class TQCustomDBGrid;
class TQDBGridDropDownList;
class TQDBMemoPopup;
class TImageList;

// The plain edit inside a grid: placed on a cell, hidden with it; the wheel goes to the grid.
class TQDBInplaceEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit TQDBInplaceEdit(QWidget *parent = nullptr);

    void Hide();
    virtual void Invalidate();
    virtual void SetFocus();
    void Move(const QRect &rect);
    bool PosEqual(const QRect &rect) const { return geometry() == rect; }
    // Moves to the rectangle and shows there.
    void UpdateLoc(const QRect &rect);
    bool Visible() const { return isVisible(); }

protected:
    void wheelEvent(QWheelEvent *event) override;
};

// The edit with its button and image: the button drops a list down, shows a menu or runs
// the ellipsis action, and the keys around an open list are handled here.
class TQDBInplaceEditor : public TQDBInplaceEdit
{
    Q_OBJECT

public:
    explicit TQDBInplaceEditor(QWidget *parent = nullptr);
    ~TQDBInplaceEditor() override;

    virtual TEditorStyle GetEditorStyle() const { return editorStyle_; }
    void SetEditorStyle(TEditorStyle style);
    // The list that is open: the host of a popup, or none.
    QObject *OpenList() const { return list_; }
    bool ListVisible() const { return list_ != nullptr; }
    QMenu *DropDownMenu() const { return dropDownMenu_; }
    void SetDropDownMenu(QMenu *menu) { dropDownMenu_ = menu; }
    TImageList *Images() const { return images_; }
    void SetImages(TImageList *images);
    int ImageMargin() const { return imageMargin_; }
    void SetImageMargin(int margin);
    // Only the button edits: the text cannot be typed.
    bool DropDownOnly() const { return dropDownOnly_; }
    void SetDropDownOnly(bool on);
    bool AutoSelect() const { return autoSelect_; }
    void SetAutoSelect(bool on) { autoSelect_ = on; }
    bool AutoSize() const { return autoSize_; }
    void SetAutoSize(bool on);

    // The keys that belong to an open list or open one; true when the key was used up. Runs
    // before the edit or its grid sees a key.
    bool EditorKeys(QKeyEvent *event);
    // The button's place in the edit: at the right edge, empty without a button.
    QRect ButtonRect() const;

    virtual bool GetButtonEnabled() const;
    virtual void PaintButton(QPainter &painter, const QRect &rect);
    virtual void PaintClient(QPainter &painter, const QRect &rect);
    virtual void PaintImage(QPainter &painter, const QRect &rect);
    // The list keys: F4, Alt+Up and Alt+Down open and accept, Ctrl+Return opens or accepts,
    // Return accepts, Escape cancels, Tab closes without taking the value.
    virtual bool DropDownKeys(int key, Qt::KeyboardModifiers shift);
    virtual void CloseUp(bool accept);
    virtual void DropDown() {}
    virtual void EditButtonClick();
    virtual void ListCloseUp(QObject *list, bool &accept);
    virtual void ListDropDown(QObject *list);
    virtual void DrawImage(QPainter &painter, const QRect &rect);
    // Where a menu or list hangs from, on the screen.
    virtual QPoint DropDownPoint() const;
    virtual QMenu *GetDropDownMenu() const { return dropDownMenu_; }
    virtual int GetImageIndex() const { return -1; }
    // Shows the drop-down menu under the edit; false without one.
    virtual bool ShowDropDownMenu();

    TNotifyEvent OnEditButtonClick;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    // Keys the edit types after the list keys: the button's own keys, the keys a list owns.
    virtual bool KeyDown(QKeyEvent *event);
    // The text margins that keep typing clear of the button and the image.
    void UpdateMargins();
    QRect ImageRect() const;

private:
    TEditorStyle editorStyle_ = edsSimple;
    QPointer<QObject> list_;
    bool pressed_ = false;
    bool hot_ = false;
    bool tracking_ = false;
    QPointer<QMenu> dropDownMenu_;
    QPointer<TImageList> images_;
    int imageMargin_ = 0;
    bool dropDownOnly_ = false;
    bool autoSelect_ = true;
    bool autoSize_ = true;
};

// The cell editor of a data grid: its style, lists and colour come from the column it edits.
class TQDBGridEditor : public TQDBInplaceEditor
{
    Q_OBJECT

public:
    explicit TQDBGridEditor(TQCustomDBGrid *grid, QWidget *parent = nullptr);
    ~TQDBGridEditor() override;

    TQCustomDBGrid *DBGrid() const { return grid_; }
    // The column being edited; set each time the editor is placed on a cell.
    void SetColumn(TQColumn *column);
    // Takes style, flags and colour from the column again.
    virtual void UpdateContents();
    TQDBGridDropDownList *PopupList() const;
    // Opens the cell's whole text in a box of several lines under the cell; what is taken
    // there goes to the column as a list's value does. Read-only when the editor is.
    void EditMemo();
    TQDBMemoPopup *MemoPopup() const;

    TEditorStyle GetEditorStyle() const override;
    virtual const QMetaObject *GetEditorListClass() const;
    void DropDown() override;
    void CloseUp(bool accept) override;
    void EditButtonClick() override;
    void ListCloseUp(QObject *list, bool &accept) override;
    QMenu *GetDropDownMenu() const override;

    virtual void ClearListValue();
    // Shows the first list item that starts with text, the untyped rest selected.
    virtual bool SelectListItem(const QString &text);
    // Steps to the next or previous list item (the wheel, Ctrl+Up/Down).
    virtual bool SelectNextItem(bool forward, bool cycle);
    // Shows a value the list handed back, all of it selected when select is set.
    virtual void SetupListValue(const QString &text, bool select);
    // The rectangle the list hangs from, in the co-ordinates of the editor's parent.
    virtual QRect DropDownRect() const;
    virtual TQColumn *GetColumn() const;
    // The record under the editor changed: an open list no longer fits it.
    virtual void DataChanged();
    virtual void UpdateEditorColor();

    bool AutoComplete() const { return autoComplete_; }
    bool AutoDropDown() const { return autoDropDown_; }
    bool AutoClose() const { return autoClose_; }

protected:
    bool DropDownKeys(int key, Qt::KeyboardModifiers shift) override;
    void keyPressEvent(QKeyEvent *event) override;
    // Finds what was typed in the list; true when the key was used up.
    bool ProcessAutoComplete(QKeyEvent *event);
    // Whether what is edited may change now (and, for data, is put into edit mode).
    virtual bool CanEditModify();
    // The value a list closed with goes where it belongs: in a grid, through the grid.
    virtual void ApplyListValue(QObject *list, Variant &value, bool &accept);
    // The edit's menu, whose cutting, pasting and undoing start the edit as their keys do.
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    // A list made for one drop-down, that could not be shown.
    void dropDownFailed();

    TQCustomDBGrid *grid_;
    QPointer<TQColumn> column_;
    QPointer<TQDBGridDropDownList> popup_;
    QPointer<TQDBMemoPopup> memo_;
    bool autoComplete_ = false;
    bool autoDropDown_ = false;
    bool autoClose_ = false;
    bool closingByReturn_ = false;
    qint64 lastKeyTime_ = 0;
};

} // namespace qdb
