#include "app/smart/offer_text.h"

#include "engine/entry_text.h"
#include "text/localization.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

QString one_line(const std::string& text) {
  return QString::fromStdString(text).simplified();
}

/// The name of an owner, which is the key of a text where several programs share it.
QString subject_of(const AppContext& context, const std::string& subject) {
  return subject.empty() ? QString() : context.text(one_line(subject).toUtf8().constData());
}

QString size_note(const AppContext& context, const OfferedItem& item) {
  if (item.frees == item.size) return {};
  return context.text("frees %@ of %@", {context.byte_count(item.frees), context.byte_count(item.size)});
}

}  // namespace

QString label_of_offer(const AppContext& context, const Offer& offer) {
  const QString label = offer.label_is_key ? context.text(offer.label.c_str()) : one_line(offer.label);
  return offer.label_suffix ? context.text("%@: %@", {label, context.text(offer.label_suffix)}) : label;
}

QString note_of_offer(const AppContext& context, const OfferedItem& item) {
  const QString owner = subject_of(context, item.offer.owner.name);
  if (item.running == Running::yes) return context.text("%@ is running", {owner});
  if (item.running == Running::unknown) return context.text("Is %@ running? Nobody can tell", {owner});
  QString frees = size_note(context, item);
  if (!frees.isEmpty()) return frees;
  if (item.offer.grade == Grade::may_lose) return context.text("may lose something");
  if (!item.starts_ticked()) return context.text("for you to choose");
  return item.offer.grade == Grade::costs_time ? context.text("costs time") : QString();
}

QString reason_of_offer(const AppContext& context, const Offer& offer) {
  return context.text(offer.reason, {subject_of(context, offer.subject)});
}

QString consequence_of_offer(const AppContext& context, const Offer& offer) {
  return context.text(offer.after, {subject_of(context, offer.subject)});
}

}  // namespace tarnby
