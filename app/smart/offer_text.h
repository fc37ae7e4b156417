#pragma once

#include <QString>

#include "app/parts/app_context.h"
#include "engine/offered_item.h"

namespace tarnby {

// The words of an offer in the language of the window. Main thread.

/// What a row is called: "GIMP", or with what tells it from others of its owner "GIMP: …".
QString label_of_offer(const AppContext& context, const Offer& offer);

/// What a person should know before ticking it, in a few words; empty when there is nothing.
QString note_of_offer(const AppContext& context, const OfferedItem& item);

/// Why it is offered and what happens once it is gone, in sentences.
QString reason_of_offer(const AppContext& context, const Offer& offer);
QString consequence_of_offer(const AppContext& context, const Offer& offer);

}  // namespace tarnby
