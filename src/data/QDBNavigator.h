#pragma once

// The package's navigator, with captions beside or under its glyphs and buttons drawn flat,
// themed or in a gradient, and its data controls that can show their parent through them.

#include "data/QDBGradient.h"
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

// The navigator's buttons as Qt flags, for Designer and uic: each flag is its button's bit
// in the set.
namespace QDBNavFlags {
Q_NAMESPACE
enum TNavigateBtn : unsigned {
    nbFirst = 1u << qdb::nbFirst, nbPrior = 1u << qdb::nbPrior, nbNext = 1u << qdb::nbNext, nbLast = 1u << qdb::nbLast,
    nbInsert = 1u << qdb::nbInsert, nbDelete = 1u << qdb::nbDelete, nbEdit = 1u << qdb::nbEdit, nbPost = 1u << qdb::nbPost,
    nbCancel = 1u << qdb::nbCancel, nbRefresh = 1u << qdb::nbRefresh, nbApplyUpdates = 1u << qdb::nbApplyUpdates,
    nbCancelUpdates = 1u << qdb::nbCancelUpdates
};
Q_DECLARE_FLAGS(TNavButtonSet, TNavigateBtn)
Q_FLAG_NS(TNavButtonSet)
} // namespace QDBNavFlags

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

// Beside its own properties, a Qt-typed face for Designer and uic: the visible buttons as
// flags and the gradient's parts.
class TQDBNavigator : public TDBNavigator, public TQGradientFace<TQDBNavigator>
{
    Q_OBJECT
    Q_CLASSINFO("QtTypedFace", "visibleButtons gradientStartColor gradientEndColor gradientDirection")
    Q_PROPERTY(qdb::QDBNavFlags::TNavButtonSet visibleButtons READ visibleFlags WRITE setVisibleFlags)
    Q_PROPERTY(QColor gradientStartColor READ gradientStartColor WRITE setGradientStart)
    Q_PROPERTY(QColor gradientEndColor READ gradientEndColor WRITE setGradientEnd)
    Q_PROPERTY(Qt::Orientation gradientDirection READ gradientDirection WRITE setGradientDirection)
    Q_PROPERTY(bool ApplyTheme READ ApplyTheme WRITE SetApplyTheme)
    Q_PROPERTY(qdb::TStrings *Captions READ Captions)
    Q_PROPERTY(qdb::Grids::TGridDrawingStyle DrawingStyle READ DrawingStyle WRITE SetDrawingStyle)
    Q_PROPERTY(bool Fine READ Fine WRITE SetFine)
    Q_PROPERTY(bool FineTheme READ FineTheme WRITE SetFineTheme)
    Q_PROPERTY(qdb::TQGradient Gradient READ Gradient WRITE SetGradient DESIGNABLE false)
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
    // Fine buttons under the mouse or pressed take the theme's face.
    bool FineTheme() const { return fineTheme_; }
    void SetFineTheme(bool on);
    // The colours of the gradient drawing style.
    const TQGradient &Gradient() const { return gradient_; }
    void SetGradient(const TQGradient &gradient);
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
    QDBNavFlags::TNavButtonSet visibleFlags() const
    {
        return QDBNavFlags::TNavButtonSet::fromInt(QDBNavFlags::TNavButtonSet::Int(VisibleButtons().Bits()));
    }
    void setVisibleFlags(QDBNavFlags::TNavButtonSet f) { SetVisibleButtons(TNavButtonSet::FromBits(f.toInt())); }
    // The caption a button has, shown or not.
    QString captionOf(TNavigateBtn button) const;
    void setCaptions();
    void restyle();

    TStrings *captions_;
    bool showCaptions_ = false;
    bool applyTheme_ = true;
    TGridDrawingStyle drawingStyle_ = gdsThemed;
    bool fine_ = false;
    bool fineTheme_ = false;
    TQGradient gradient_;
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

// A radio group that may carry a check box in its frame (unticked, its buttons rest) and fills
// its background with its own colour or a gradient, or lets its parent show through.
class TQDBRadioGroup : public TDBRadioGroup, public TQGradientFace<TQDBRadioGroup>
{
    Q_OBJECT
    Q_CLASSINFO("QtTypedFace", "gradientStartColor gradientEndColor gradientDirection")
    Q_PROPERTY(bool CheckBox READ CheckBox WRITE SetCheckBox)
    Q_PROPERTY(qdb::TQGradient Gradient READ Gradient WRITE SetGradient DESIGNABLE false)
    Q_PROPERTY(QColor gradientStartColor READ gradientStartColor WRITE setGradientStart)
    Q_PROPERTY(QColor gradientEndColor READ gradientEndColor WRITE setGradientEnd)
    Q_PROPERTY(Qt::Orientation gradientDirection READ gradientDirection WRITE setGradientDirection)
    Q_PROPERTY(bool ParentBackground READ ParentBackground WRITE SetParentBackground)
    Q_PROPERTY(bool PartialBackground READ PartialBackground WRITE SetPartialBackground)

public:
    explicit TQDBRadioGroup(QWidget *parent = nullptr);

    bool CheckBox() const { return isCheckable(); }
    void SetCheckBox(bool on) { setCheckable(on); }
    // A gradient fills the background unless it has no colours of its own.
    const TQGradient &Gradient() const { return gradient_; }
    void SetGradient(const TQGradient &gradient);
    // The parent's background shows through; nothing is filled.
    bool ParentBackground() const { return parentBackground_; }
    void SetParentBackground(bool on);
    // Only the frame is filled, not the band of the caption above it.
    bool PartialBackground() const { return partialBackground_; }
    void SetPartialBackground(bool on);

    TNotifyEvent OnCheckBoxChanged;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TQGradient gradient_;
    bool parentBackground_ = false;
    bool partialBackground_ = true;
};

} // namespace qdb
