// The host interface of pwc: the data store, the panels and text helpers, the
// formula evaluator and the engine.
#ifndef PWC_PWC_H
#define PWC_PWC_H

#include "baspcengin.h"
#include "baspclator/pc_lator.h"
#include "baspcpanel/pc_panel.h"
#include "baspcpanel/pc_text.h"
#include "pd_data.h"
#include "pd_util.h"

#endif
