// Lists from strangers, in every form: what is read can be written, and is then read as the same.

#include "fuzz/fuzzer.h"
#include "text/property_list.h"

using namespace tarnby;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto list = parse_property_list(fuzz::text_of(data, size));
  if (!list) return 0;
  // Compared as texts: a number that is none equals nothing, itself included.
  const std::string written = write_xml_property_list(*list);
  constexpr std::size_t long_text =
      1U << 20U;  // a few bytes can stand for megabytes, which take too long again and again
  if (written.size() > long_text) return 0;
  const auto again = parse_property_list(written);
  fuzz::check(again.has_value(), "what was written can be read");
  const std::string rewritten = write_xml_property_list(*again);
  const bool is_faithful = written.find("\uFFFD") == std::string::npos;  // no text that XML cannot hold
  fuzz::check(!is_faithful || rewritten == written, "nothing is lost or changed on the way");
  const auto third = parse_property_list(rewritten);
  fuzz::check(third && write_xml_property_list(*third) == rewritten, "what came from XML is written the same for ever");
  return 0;
}
