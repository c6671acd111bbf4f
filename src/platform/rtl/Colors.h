#pragma once

// Colour numbers as the components store them: 0x00BBGGRR, with system colours resolved
// through the palette and two markers for "computed by the component".

#include <QColor>
#include <QPalette>

namespace qdb {

using TColor = qint32;

inline constexpr TColor clNone = 0x1FFFFFFF;
inline constexpr TColor clDefault = 0x20000000;
inline constexpr TColor clBlack = 0x000000;
inline constexpr TColor clWhite = 0xFFFFFF;
inline constexpr TColor clSilver = 0xC0C0C0;
inline constexpr TColor clGray = 0x808080;
inline constexpr TColor clOlive = 0x008080;

// System colours: the high bit set, the palette role in the low bits.
inline constexpr TColor clSystemColor = TColor(0x80000000u);
inline constexpr TColor clWindow = clSystemColor | QPalette::Base;
inline constexpr TColor clWindowText = clSystemColor | QPalette::Text;
inline constexpr TColor clBtnFace = clSystemColor | QPalette::Button;
inline constexpr TColor clBtnText = clSystemColor | QPalette::ButtonText;
inline constexpr TColor clHighlight = clSystemColor | QPalette::Highlight;
inline constexpr TColor clHighlightText = clSystemColor | QPalette::HighlightedText;
inline constexpr TColor cl3DLight = clSystemColor | QPalette::Midlight;
inline constexpr TColor clBtnShadow = clSystemColor | QPalette::Mid;
inline constexpr TColor clInfoBk = clSystemColor | QPalette::ToolTipBase;
inline constexpr TColor clGrayText = clSystemColor | QPalette::PlaceholderText;

// The colour to paint with; clNone and clDefault give an invalid QColor.
QColor ColorToQColor(TColor color, const QPalette &palette = QPalette());
// The colour number of a plain colour.
TColor QColorToColor(const QColor &color);
// The colour moved along a gradient: a positive step towards white, a negative one towards
// black, 3 percent per step.
QColor GetShadowColor(const QColor &color, int step);

} // namespace qdb
