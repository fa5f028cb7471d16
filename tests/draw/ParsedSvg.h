// Test helper: an SVG picture read back with expat, keeping what the tests
// check: label boxes, bond groups, circles, dashed lines and the texts.
#ifndef MOLCRYST_TESTS_DRAW_PARSEDSVG_H
#define MOLCRYST_TESTS_DRAW_PARSEDSVG_H

#include <expat.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace molcryst {

// What the test needs of a picture: the boxes of the atom labels, the
// number of bond groups, the texts.
struct Parsed {
    bool well_formed = false;
    std::string error;
    int bonds = 0;
    int rings = 0;
    std::vector<std::vector<double> > label_boxes;   // atoms and symbols
    std::vector<std::vector<double> > symbol_boxes;  // symbols alone
    std::vector<std::vector<double> > circles;       // cx cy r
    std::vector<std::vector<double> > dashed_lines;  // x1 y1 x2 y2
    std::vector<std::string> symbol_texts;
    std::string texts;
    int in_symbol = 0;  // depth inside a symbol's group
};

inline std::vector<double> numbers(const std::string& text, std::size_t count) {
    std::istringstream in(text);
    std::vector<double> v(count, 0.0);
    for (double& x : v) in >> x;
    return v;
}

inline void XMLCALL start_element(void* data, const XML_Char* name, const XML_Char** attributes) {
    Parsed& p = *static_cast<Parsed*>(data);
    std::map<std::string, std::string> a;
    for (int i = 0; attributes[i] != nullptr; i += 2) a[attributes[i]] = attributes[i + 1];
    if (std::string(name) == "g" && a["class"] == "bond") ++p.bonds;
    if (std::string(name) == "circle" && a["class"] == "ring")
        p.circles.push_back(numbers(a["cx"] + " " + a["cy"] + " " + a["r"], 3));
    if (std::string(name) == "circle" && a["class"] == "ring") ++p.rings;
    if (std::string(name) == "line" && !a["stroke-dasharray"].empty())
        p.dashed_lines.push_back(numbers(a["x1"] + " " + a["y1"] + " " + a["x2"] + " " + a["y2"], 4));
    if (p.in_symbol > 0) ++p.in_symbol;
    if (std::string(name) == "g" && (a["class"] == "atom" || a["class"] == "symbol"))
        p.label_boxes.push_back(numbers(a["data-box"], 4));
    if (std::string(name) == "g" && a["class"] == "symbol") {
        p.symbol_boxes.push_back(numbers(a["data-box"], 4));
        p.symbol_texts.push_back("");
        p.in_symbol = 1;
    }
}

inline void XMLCALL end_element(void* data, const XML_Char*) {
    Parsed& p = *static_cast<Parsed*>(data);
    if (p.in_symbol > 0) --p.in_symbol;
}

inline void XMLCALL characters(void* data, const XML_Char* s, int n) {
    Parsed& p = *static_cast<Parsed*>(data);
    p.texts.append(s, n);
    if (p.in_symbol > 0) p.symbol_texts.back().append(s, n);
}

inline Parsed parse(const std::string& svg) {
    Parsed p;
    XML_Parser parser = XML_ParserCreate("UTF-8");
    XML_SetUserData(parser, &p);
    XML_SetElementHandler(parser, start_element, end_element);
    XML_SetCharacterDataHandler(parser, characters);
    p.well_formed = XML_Parse(parser, svg.data(), static_cast<int>(svg.size()), 1) == XML_STATUS_OK;
    if (!p.well_formed) p.error = XML_ErrorString(XML_GetErrorCode(parser));
    XML_ParserFree(parser);
    return p;
}

// Pairs of label boxes that overlap by more than a hair.
inline int overlapping_labels(const Parsed& p) {
    int count = 0;
    const double hair = 0.5;
    for (std::size_t i = 0; i < p.label_boxes.size(); ++i)
        for (std::size_t j = i + 1; j < p.label_boxes.size(); ++j) {
            const std::vector<double>& a = p.label_boxes[i];
            const std::vector<double>& b = p.label_boxes[j];
            if (a[0] + a[2] - hair > b[0] && b[0] + b[2] - hair > a[0] && a[1] + a[3] - hair > b[1] &&
                b[1] + b[3] - hair > a[1])
                ++count;
        }
    return count;
}

}  // namespace molcryst

#endif
