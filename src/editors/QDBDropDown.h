#pragma once

// The lists that drop down under an edit box: the popup window itself, a small grid of this
// library, and the host object an editor creates for one drop-down.

#include "QDBEditorTypes.h"

#include "grid/QDBGrid.h"

#include <QPointer>

namespace qdb {

class TQDBGridEditor;

// A borderless top-level grid under an edit box. It keeps the keys that belong to a list
// (moving, accepting, cancelling) and hands every other key back to the edit box, so typing
// goes on while it is open. An outside click or the loss of the edit box closes it unaccepted.
class TQDBPopupList : public TQCustomDBGrid
{
    Q_OBJECT

public:
    // The edit box is the one keys go back to; it owns the popup.
    explicit TQDBPopupList(QWidget *editBox);
    ~TQDBPopupList() override;

    // Closes the list; accept says whether its value is taken. Reported through OnCloseUp.
    virtual void CloseUp(bool accept);
    // Shows the list at a screen point, at the size CalcSize gives.
    virtual void DropDown(const QPoint &point);
    virtual void HideList();
    virtual void ShowList(const QPoint &point);
    // The size the list's content asks for: DropDownRows rows (a handful when 0) and every
    // column, never narrower than MinWidth.
    virtual QSize CalcSize();
    // Shows the list under a screen rectangle, above it where the screen ends below, and
    // moved sideways to stay on the screen.
    void PlaceUnder(const QRect &anchor);

    // A list of ticks: each row carries a check box (its row selection) that a click or
    // Space turns, and Return takes every ticked row.
    void SetCheckList(bool on);
    bool CheckList() const { return checkList_; }
    // Ticks or clears the current row.
    virtual void ToggleCheck();

    bool IsOpen() const { return open_; }
    QWidget *EditBox() const { return editBox_; }
    TDataSource *ListSource() { return &source_; }
    int DropDownRows = 0;
    int MinWidth = 0;
    std::function<void(bool accept)> OnCloseUp;

protected:
    void KeyDown(QKeyEvent *event) override;
    void DrawCell(QPainter &painter, int col, int row, const QRect &rect, TGridDrawState state) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    // Whether a click on a row takes it and closes the list.
    virtual bool ClickAccepts() const { return !checkList_; }

private:
    // Moves in a list of ticks; true when the key was a move.
    bool moveChecked(int key, bool ctrl);

    QPointer<QWidget> editBox_;
    TDataSource source_;
    bool open_ = false;
    bool checkList_ = false;
};

// One drop-down of an editor: made when the list opens, bound to the editor and the column
// it edits, holding the popup and the value the popup hands back. Descendants fill the popup
// (pick lists, lookup lists, the calendar, the calculator) and find items as the user types.
class TQDBGridDropDownList : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE TQDBGridDropDownList(qdb::TQDBGridEditor *editor, qdb::TQColumn *column);
    // A list that drops from the grid itself (a title) rather than from an editor; its
    // bounds are in the co-ordinates of the grid's viewport.
    TQDBGridDropDownList(TQCustomDBGrid *grid, TQColumn *column);
    ~TQDBGridDropDownList() override;

    TQDBGridEditor *Editor() const { return editor_; }
    TQColumn *Column() const { return column_; }
    TQCustomDBGrid *Grid() const;
    TQDBPopupList *Popup() const { return popup_; }
    // The rectangle the list hangs from, in the co-ordinates of the editor's parent.
    void SetBounds(const QRect &rect) { bounds_ = rect; }
    QRect Bounds() const { return bounds_; }

    // Fills and shows the popup; an error (a list data set that will not open) goes on to
    // the caller with no popup left behind.
    void DropDown();
    void CloseUp(bool accept);
    bool Showing() const { return popup_ && popup_->IsOpen(); }

    // Incremental search: moves the list to the first item whose text begins with text,
    // case aside, and gives that item's whole text.
    virtual bool SelectListItem(const QString &text, QString &itemText);
    // The item after (or before) the current one, wrapping round when cycle is set.
    virtual bool SelectNextItem(bool forward, bool cycle, QString &itemText);
    // The text of the item the list stands on.
    virtual QString ListText() const;

    // What the list hands back when it closes accepted: the value to store.
    Variant Value;
    bool FreeOnClose = false;
    TEditorListDropDownEvent OnDropDown;
    std::function<void(QObject *list, bool &accept)> OnCloseUp;

protected:
    // Makes the popup; the base gives a plain list.
    virtual TQDBPopupList *CreatePopup();
    // Points the popup at its data and at the cell's current value.
    virtual void DoDropDown() {}
    // Reads the value of the item chosen.
    virtual void DoCloseUp(bool accept) { Q_UNUSED(accept); }
    // The list's own data set: the one the popup shows.
    TDataSet *ListDataSet() const;
    TQListOptions ListOptions() const;

private:
    void closed(bool accept);

    TQDBGridEditor *editor_ = nullptr;
    TQCustomDBGrid *grid_ = nullptr;
    QPointer<TQColumn> column_;
    QPointer<TQDBPopupList> popup_;
    QRect bounds_;
};

} // namespace qdb
