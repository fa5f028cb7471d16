// libFuzzer target: any bytes as a CIF file, through the reader and the
// structure report. A CifError or a refusal of the report is a clean answer;
// anything else (a crash, a sanitizer report, a hang, a runaway allocation)
// is a bug.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "molcryst/io/CifReader.h"
#include "molcryst/io/StructureReport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    molcryst::CifDocument document;
    try {
        document = molcryst::CifReader::read_text(text, "fuzz.cif");
    } catch (const molcryst::CifError&) {
        return 0;
    }
    for (const molcryst::CifBlock& block : document.blocks) {
        try {
            molcryst::StructureReport report(block);
        } catch (const std::runtime_error&) {
        }
    }
    return 0;
}
