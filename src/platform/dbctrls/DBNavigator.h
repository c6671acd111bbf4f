#pragma once

// The record navigator: a row (or column) of buttons that move through a data set and edit
// it, each enabled only when its action can be taken.

#include "platform/db/DataSource.h"
#include "platform/rtl/Set.h"
#include "platform/rtl/Strings.h"

#include <QAbstractButton>
#include <QWidget>

#include <array>

namespace qdb {

namespace DBCtrlsTypes {
Q_NAMESPACE
enum TNavigateBtn {
    nbFirst, nbPrior, nbNext, nbLast, nbInsert, nbDelete, nbEdit, nbPost, nbCancel, nbRefresh, nbApplyUpdates,
    nbCancelUpdates
};
Q_ENUM_NS(TNavigateBtn)
enum TDBNavigatorKind { dbnHorizontal, dbnVertical };
Q_ENUM_NS(TDBNavigatorKind)
} // namespace DBCtrlsTypes
using namespace DBCtrlsTypes;

using TNavButtonSet = Set<TNavigateBtn>;
using TNavClickEvent = std::function<void(TObject *sender, TNavigateBtn button)>;

constexpr int NavigatorButtonCount = nbCancelUpdates + 1;

class TDBNavigator;

// Follows the data source for the navigator.
class TNavDataLink : public TDataLink
{
public:
    explicit TNavDataLink(TDBNavigator *navigator) : navigator_(navigator) {}

protected:
    void ActiveChanged() override;
    void EditingChanged() override;
    void DataSetChanged() override;
    void RecordChanged(TField *field) override;

private:
    TDBNavigator *navigator_;
};

class TDBNavigator : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(qdb::TDataSource *DataSource READ DataSource WRITE SetDataSource)
    Q_PROPERTY(qdb::TNavButtonSet VisibleButtons READ VisibleButtons WRITE SetVisibleButtons DESIGNABLE false)
    Q_PROPERTY(bool ConfirmDelete READ ConfirmDelete WRITE SetConfirmDelete)
    Q_PROPERTY(qdb::TStrings *Hints READ Hints)
    Q_PROPERTY(qdb::DBCtrlsTypes::TDBNavigatorKind Kind READ Kind WRITE SetKind)
    Q_PROPERTY(int MaxErrors READ MaxErrors WRITE SetMaxErrors)

public:
    explicit TDBNavigator(QWidget *parent = nullptr);
    ~TDBNavigator() override;

    TDataSource *DataSource() const { return link_.DataSource(); }
    void SetDataSource(TDataSource *source);
    // The ten classic buttons unless set: the cached-update ones are asked for by name.
    TNavButtonSet VisibleButtons() const { return visible_; }
    void SetVisibleButtons(TNavButtonSet buttons);
    bool ConfirmDelete() const { return confirmDelete_; }
    void SetConfirmDelete(bool on) { confirmDelete_ = on; }
    // Tool tips of the buttons in their order; an empty or missing line keeps the default.
    TStrings *Hints() const { return hints_; }
    TDBNavigatorKind Kind() const { return kind_; }
    void SetKind(TDBNavigatorKind kind);
    int MaxErrors() const { return maxErrors_; }
    void SetMaxErrors(int errors) { maxErrors_ = errors; }
    QAbstractButton *Button(TNavigateBtn button) const;

    // Runs a button's action, as a click does: BeforeAction, the action, OnClick. What the
    // data set refuses is shown and leaves the record as it was.
    virtual void BtnClick(TNavigateBtn button);
    static QString DefaultHint(TNavigateBtn button);

    TNavClickEvent BeforeAction;
    TNavClickEvent OnClick;

protected:
    // Makes a button; the buttons are made once, when the navigator is first shown or asked
    // for one, so that a descendant's buttons are the ones made.
    virtual QAbstractButton *CreateButton(TNavigateBtn button);
    // Enables the buttons by the data set's place and state.
    virtual void ActiveChanged();
    virtual void DataChanged();
    virtual void EditingChanged();
    virtual void UpdateHints();
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    // The buttons were made: a descendant dresses them.
    virtual void ButtonsCreated() {}
    void EnsureButtons() const;

private:
    friend class TNavDataLink;
    void layOut();

    TNavDataLink link_{this};
    mutable std::array<QAbstractButton *, NavigatorButtonCount> buttons_{};
    TNavButtonSet visible_;
    bool confirmDelete_ = true;
    TStrings *hints_;
    TDBNavigatorKind kind_ = dbnHorizontal;
    int maxErrors_ = -1;
};

} // namespace qdb
