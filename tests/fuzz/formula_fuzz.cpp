// libFuzzer target: any bytes as the text of a residue formula and of a
// crystal formula, and as an archive of a crystal formula. A refusal
// (std::invalid_argument, std::overflow_error, std::runtime_error) is clean;
// what parses must print text that parses again and settles after one more
// round, and what an archive gives must write and read back identical.
// Anything else (a crash, a sanitizer report, a hang) is a bug.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "molcryst/formula/CrystalChemicalFormula.h"
#include "molcryst/support/Archive.h"

using namespace molcryst;

namespace {

template <class F>
std::string printed(const F& f) {
    std::ostringstream out;
    f.print(out);
    return out.str();
}

template <class F>
void settles(const std::string& text) {
    F first(text, true);
    const std::string once = printed(first);
    const std::string twice = printed(F(once, true));
    if (printed(F(twice, true)) != twice) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        settles<MoleculeChemicalFormula>(text);
    } catch (const std::invalid_argument&) {
    } catch (const std::overflow_error&) {
    }
    try {
        settles<CrystalChemicalFormula>(text);
        const CrystalChemicalFormula f(text, false);
        (void)f.sum_formula().empirical_formula();
        (void)f.molecular_weight_sum();
    } catch (const std::invalid_argument&) {
    } catch (const std::overflow_error&) {
    }

    Archive ar = Archive::temporary();
    if (size > 0) ar.write_bytes(data, size);
    ar.rewind();
    try {
        CrystalChemicalFormula f;
        f.read(ar);
        Archive out = Archive::temporary();
        f.write(out);
        out.rewind();
        CrystalChemicalFormula back;
        back.read(out);
        if (!identical(f, back)) std::abort();
    } catch (const std::runtime_error&) {
    } catch (const std::invalid_argument&) {  // an element code out of range
    }
    return 0;
}
