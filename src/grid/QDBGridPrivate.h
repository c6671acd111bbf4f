#pragma once

// The state of the data grid, shared by the files that implement it.

#include "QDBGrid.h"

#include <memory>

namespace qdb {

struct TQCustomDBGrid::Private
{
    std::unique_ptr<TQGridDataLink> link;
    TQDBGridColumns *columns = nullptr;
    TQGridStyle *style = nullptr;
    TQDBGridOptions options{dgEditing, dgTitles, dgIndicator, dgColumnResize, dgColLines, dgRowLines, dgTabs,
                            dgConfirmDelete, dgCancelOnExit, dgTitleClick, dgMarkerAutoToggle};
    TQDBGridOptionsEx optionsEx{dgBlankRow, dgAutoAscendOrder};
    TQDBGridOptionsExt optionsExt;
    QFont titleFont;
    bool titleFontAssigned = false;
    bool columnNesting = true;
    int defaultWidthMin = -1;
    int defaultWidthMax = -1;
    QString keyFields;
    int layoutLock = 0;
    int updateLock = 0;
    int cancelling = 0;
    int positionLock = 0;
    TBookmark savedBookmark;
    int totalsCount = 1; // the blank filler row; the totals rows come later
    TGridImageList indicators;
    bool settingActive = false; // the grid follows the data set, it does not move it
    bool updatingScrollBar = false;
    int savingColumns = 0;
    int loadingColumns = 0;
    QString orderFields;
    int orderLock = 0;
    bool stretchMode = false;
    int wheelScrollRows = 0;
    // What the user typed into the cell editor and the field has not yet taken.
    QString editText;
    int editColumn = -1;
    int typing = 0;
    TQSettingsOptions settingsOptions{soLoadLayout, soSaveLayout};
};

} // namespace qdb
