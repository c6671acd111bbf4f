#pragma once

// The package's navigator, with captions beside or under its glyphs and buttons drawn flat,
// themed or in a gradient, and its data controls that can show their parent through them.

#include "platform/dbctrls/DBCtrls.h"
#include "platform/dbctrls/DBNavigator.h"
#include "platform/grids/Grids.h"

#include <QToolButton>

namespace qdb {

namespace QDBNavTypes {
Q_NAMESPACE
// Where a button's glyph stands beside its caption.
enum TButtonLayout { blGlyphLeft, blGlyphRight, blGlyphTop, blGlyphBottom };
Q_ENUM_NS(TButtonLayout)
} // namespace QDBNavTypes
using namespace QDBNavTypes;

class TQDBNavigator;

// A navigator button: drawn in its navigator's drawing style, lit while the mouse is over
// it, with its glyph and caption placed by the navigator's layout, margin and spacing.
class TQDBNavButton : public QToolButton
{
    Q_OBJECT

public:
    TQDBNavButton(TQDBNavigator *navigator, TNavigateBtn index);
    TNavigateBtn Index() const { return index_; }
    bool Hot() const { return underMouse(); }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TQDBNavigator *navigator_;
    TNavigateBtn index_;
};

class TQDBNavigator : public TDBNavigator
{
    Q_OBJECT
    Q_PROPERTY(bool ApplyTheme READ ApplyTheme WRITE SetApplyTheme)
    Q_PROPERTY(qdb::TStrings *Captions READ Captions)
    Q_PROPERTY(qdb::Grids::TGridDrawingStyle DrawingStyle READ DrawingStyle WRITE SetDrawingStyle)
    Q_PROPERTY(bool Fine READ Fine WRITE SetFine)
    Q_PROPERTY(bool Flat READ Flat WRITE SetFlat)
    Q_PROPERTY(qdb::QDBNavTypes::TButtonLayout Layout READ Layout WRITE SetLayout)
    Q_PROPERTY(int Margin READ Margin WRITE SetMargin)
    Q_PROPERTY(bool ShowCaptions READ ShowCaptions WRITE SetShowCaptions)
    Q_PROPERTY(int Spacing READ Spacing WRITE SetSpacing)

public:
    explicit TQDBNavigator(QWidget *parent = nullptr);

    // Captions of the buttons in their order; an empty or missing line takes the default.
    TStrings *Captions() const { return captions_; }
    static QString DefaultCaption(TNavigateBtn button);
    // The caption a button shows now: none unless ShowCaptions.
    QString Caption(TNavigateBtn button) const;
    bool ShowCaptions() const { return showCaptions_; }
    void SetShowCaptions(bool on);
    bool ApplyTheme() const { return applyTheme_; }
    void SetApplyTheme(bool on);
    TGridDrawingStyle DrawingStyle() const { return drawingStyle_; }
    void SetDrawingStyle(TGridDrawingStyle style);
    // Thin single-line edges in place of the style's raised ones.
    bool Fine() const { return fine_; }
    void SetFine(bool on);
    // Buttons show their edges only under the mouse.
    bool Flat() const { return flat_; }
    void SetFlat(bool on);
    TButtonLayout Layout() const { return layout_; }
    void SetLayout(TButtonLayout layout);
    // Pixels from the edge to the glyph; -1 centres glyph and caption.
    int Margin() const { return margin_; }
    void SetMargin(int margin);
    // Pixels between the glyph and the caption.
    int Spacing() const { return spacing_; }
    void SetSpacing(int spacing);

protected:
    QAbstractButton *CreateButton(TNavigateBtn button) override;
    void ButtonsCreated() override;
    void UpdateHints() override;

private:
    // The caption a button has, shown or not.
    QString captionOf(TNavigateBtn button) const;
    void setCaptions();
    void restyle();

    TStrings *captions_;
    bool showCaptions_ = false;
    bool applyTheme_ = true;
    TGridDrawingStyle drawingStyle_ = gdsThemed;
    bool fine_ = false;
    bool flat_ = false;
    TButtonLayout layout_ = blGlyphLeft;
    int margin_ = -1;
    int spacing_ = 4;
};

// Labels and check boxes that let their parent's background show through while Transparent.
class TQDBText : public TDBText
{
    Q_OBJECT
    Q_PROPERTY(bool Transparent READ Transparent WRITE SetTransparent)

public:
    explicit TQDBText(QWidget *parent = nullptr);
    bool Transparent() const { return !autoFillBackground(); }
    void SetTransparent(bool on) { setAutoFillBackground(!on); }
};

class TQDBCheckBox : public TDBCheckBox
{
    Q_OBJECT
    Q_PROPERTY(bool Transparent READ Transparent WRITE SetTransparent)

public:
    explicit TQDBCheckBox(QWidget *parent = nullptr);
    bool Transparent() const { return !autoFillBackground(); }
    void SetTransparent(bool on) { setAutoFillBackground(!on); }
};

class TQDBRadioGroup : public TDBRadioGroup
{
    Q_OBJECT

public:
    explicit TQDBRadioGroup(QWidget *parent = nullptr);
};

} // namespace qdb
