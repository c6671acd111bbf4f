#pragma once

#include <QIcon>

namespace qdb {

enum class TDesignerIcon { Grid, Editor, ColumnEditor, Navigator, Text, CheckBox, RadioGroup };

// The widget box's icons, drawn rather than shipped so that they follow the screen's scale.
QIcon DesignerIcon(TDesignerIcon kind);

} // namespace qdb
