// libFuzzer target: any bytes as an archive of contact criteria, read as one
// criterion and as a vector. A std::runtime_error is a clean refusal; what
// was read must write again and read back to the same criteria. Anything
// else (a crash, a sanitizer report, a hang, a runaway allocation) is a bug.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "molcryst/contact/ContactCriterionArchiver.h"
#include "molcryst/support/Archive.h"

using namespace molcryst;

namespace {

Archive archive_of(const uint8_t* data, size_t size) {
    Archive ar = Archive::temporary();
    if (size > 0) ar.write_bytes(data, size);
    ar.rewind();
    return ar;
}

// Writes what was read and reads it back: every criterion read is one that
// can be written, and its own output reads again.
void round_trip(const std::vector<HContactCriterion>& criteria) {
    Archive out = Archive::temporary();
    ContactCriterionArchiver::write(criteria, out);
    out.rewind();
    std::vector<HContactCriterion> back;
    ContactCriterionArchiver::read(back, out);
    if (back.size() != criteria.size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    {
        Archive ar = archive_of(data, size);
        HContactCriterion one;
        try {
            ContactCriterionArchiver::read(one, ar);
            round_trip({one});
        } catch (const std::runtime_error&) {
        }
    }
    Archive ar = archive_of(data, size);
    std::vector<HContactCriterion> many;
    try {
        ContactCriterionArchiver::read(many, ar);
        round_trip(many);
    } catch (const std::runtime_error&) {
    }
    return 0;
}
