// The criteria pages as texts, and back, for searches that are saved.
#pragma once

#include "selection/SavedSearch.h"

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

/// What stands in the fields; those at their default are left out. The advanced filter is not a field's.
CriteriaTexts textsOfCriteria(const Ui::frmSMS& ui);

/// Fills the fields with the texts, the others with their defaults. No event of the operator's is raised.
void fillCriteria(const Ui::frmSMS& ui, const CriteriaTexts& texts);

/// Every field, with the caption of its criterion where that is not offered now (see misfits).
QMap<QString, QString> offeredCriteria(const Ui::frmSMS& ui);

} // namespace zul
