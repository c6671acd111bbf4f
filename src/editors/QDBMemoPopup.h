#pragma once

// A long text edited in a box of several lines that hangs under its cell.

#include <QFrame>

#include <functional>

class QPlainTextEdit;

namespace qdb {

class TQDBMemoPopup : public QFrame
{
    Q_OBJECT

public:
    explicit TQDBMemoPopup(QWidget *owner);

    // Shows the text under the rectangle (screen co-ordinates), at least as wide as it.
    void ShowUnder(const QRect &anchor, const QString &text, bool readOnly);
    QString Text() const;
    QPlainTextEdit *Edit() const { return edit_; }
    // Closes once: Escape does not take the text; everything else that closes the box does,
    // so that nothing typed is lost by a click elsewhere.
    void CloseUp(bool accept);
    bool Showing() const { return open_; }

    std::function<void(TQDBMemoPopup *memo, bool accept)> OnCloseUp;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QPlainTextEdit *edit_;
    bool open_ = false;
};

} // namespace qdb
