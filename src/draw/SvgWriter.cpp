#include "molcryst/draw/SvgWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"
#include "molcryst/diagram/DiagramFrame.h"
#include "molcryst/diagram/DiagramSymbol.h"

namespace molcryst {
namespace draw {

namespace {

struct P {
    double x = 0.0, y = 0.0;
};

P operator+(P a, P b) { return P{a.x + b.x, a.y + b.y}; }
P operator-(P a, P b) { return P{a.x - b.x, a.y - b.y}; }
P operator*(P a, double s) { return P{a.x * s, a.y * s}; }
double length(P a) { return std::sqrt(a.x * a.x + a.y * a.y); }
double cross(P a, P b) { return a.x * b.y - a.y * b.x; }

std::string num(double v) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.2f", std::fabs(v) < 0.005 ? 0.0 : v);
    return buffer;
}

std::string escaped(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += c;
        }
    }
    return out;
}

// Colours by element, as chemists are used to them; black for the rest.
const char* colour_of(const std::string& symbol) {
    static const std::map<std::string, const char*> colours = {
        {"O", "#d01010"}, {"N", "#1030c0"}, {"S", "#a08800"}, {"P", "#d06000"}, {"F", "#108010"},
        {"Cl", "#108010"}, {"Br", "#8a2010"}, {"I", "#701070"}, {"B", "#a05050"}};
    std::map<std::string, const char*>::const_iterator found = colours.find(symbol);
    return found == colours.end() ? "#000000" : found->second;
}

// The label of a node and the box it takes around the node's point:
// distances to the left, right, top and bottom.
struct Label {
    bool shown = false;
    std::string main;         // element symbol or symbol text (markup kept)
    std::string hydrogens;    // "H" or ""
    std::string count;        // subscript of the hydrogens
    std::string charge;       // superscript
    bool hydrogens_left = false;
    double left = 0, right = 0, top = 0, bottom = 0;
    double text_start = 0;  // a symbol's text begins this far right of its point
};

// The width of one character of a label, in fonts; a multibyte UTF-8
// character (the minus sign of a charge) counts once.
double advance(const std::string& text, std::size_t i, bool small) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) return 0.0;
    return small ? 0.45 : 0.62;
}

// The characters of a marked-up label as the picture sets them: where each
// begins and how wide it is, in fonts, and whether it is of full size.
struct Glyph {
    double x, width;
    bool full;
};

std::vector<Glyph> glyphs(const std::string& text) {
    std::vector<Glyph> out;
    double x = 0.0;
    std::size_t i = 0;
    while (i < text.size()) {
        const bool sub = text.compare(i, 5, "<sub>") == 0, sup = text.compare(i, 5, "<sup>") == 0;
        if (sub || sup) {
            const std::size_t end = text.find(sub ? "</sub>" : "</sup>", i + 5);
            const std::size_t stop = end == std::string::npos ? text.size() : end;
            for (std::size_t k = i + 5; k < stop; ++k) {
                const double w = advance(text, k, true);
                if (w > 0.0) out.push_back(Glyph{x, w, false});
                x += w;
            }
            i = end == std::string::npos ? text.size() : end + 6;
        } else {
            const double w = advance(text, i, false);
            if (w > 0.0) out.push_back(Glyph{x, w, true});
            x += w;
            ++i;
        }
    }
    return out;
}

// The text of a label with <sub> and <sup> markup turned into tspans, and
// its width in characters (subscripts counting less).
std::string rich_text(const std::string& text, double font, double* width) {
    std::string out;
    double w = 0.0;
    std::size_t i = 0;
    while (i < text.size()) {
        const bool sub = text.compare(i, 5, "<sub>") == 0, sup = text.compare(i, 5, "<sup>") == 0;
        if (sub || sup) {
            const std::size_t end = text.find(sub ? "</sub>" : "</sup>", i + 5);
            const std::string inner = text.substr(i + 5, end == std::string::npos ? std::string::npos : end - i - 5);
            out += "<tspan font-size=\"" + num(font * 0.7) + "\" dy=\"" + num(sub ? font * 0.25 : -font * 0.4) + "\">" +
                   escaped(inner) + "</tspan><tspan dy=\"" + num(sub ? -font * 0.25 : font * 0.4) + "\">&#8203;</tspan>";
            for (std::size_t k = 0; k < inner.size(); ++k) w += advance(inner, k, true);
            i = end == std::string::npos ? text.size() : end + 6;
        } else {
            out += escaped(std::string(1, text[i]));
            w += advance(text, i, false);
            ++i;
        }
    }
    *width = w * font;
    return out;
}

class Picture {
public:
    Picture(const ChemicalDiagram& d, double bond_length, bool all_carbons)
        : d_(d), bond_(bond_length), font_(0.42 * bond_length), all_carbons_(all_carbons) {}

    std::string draw(const std::string& title) {
        scale_and_place();
        std::ostringstream body;
        for (ChemicalDiagram::const_edge_iterator e = d_.begin_edges(); e != d_.end_edges(); ++e) draw_edge(*e, body);
        for (ChemicalDiagram::const_node_iterator n = d_.begin_nodes(); n != d_.end_nodes(); ++n) draw_node(*n, body);
        const double width = max_.x - min_.x, height = max_.y - min_.y;
        std::ostringstream out;
        out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            << "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" << num(width) << "\" height=\""
            << num(height) << "\" viewBox=\"" << num(min_.x) << " " << num(min_.y) << " " << num(width) << " "
            << num(height) << "\" font-family=\"Helvetica, Arial, sans-serif\">\n";
        if (!title.empty()) out << "<title>" << escaped(title) << "</title>\n";
        out << "<rect x=\"" << num(min_.x) << "\" y=\"" << num(min_.y) << "\" width=\"" << num(width)
            << "\" height=\"" << num(height) << "\" fill=\"#ffffff\"/>\n";
        out << body.str() << "</svg>\n";
        return out.str();
    }

private:
    P at(const HDiagramNode& n) const { return placed_.at(n.unhand()); }

    void scale_and_place() {
        double total = 0.0;
        int count = 0;
        for (ChemicalDiagram::const_edge_iterator e = d_.begin_edges(); e != d_.end_edges(); ++e) {
            if (dynamic_cast<const DiagramCompositeEdge*>(e->unhand()) != nullptr) continue;
            const Point2d a = (*e)->node1()->position(), b = (*e)->node2()->position();
            const double l = distance(a, b);
            if (l > 1e-6) {
                total += l;
                ++count;
            }
        }
        // With no bond to measure, the diagram is taken to be in Angstrom.
        const double scale = count > 0 ? bond_ * count / total : bond_ / 1.5;
        for (ChemicalDiagram::const_node_iterator n = d_.begin_nodes(); n != d_.end_nodes(); ++n) {
            const Point2d p = (*n)->position();
            placed_[n->unhand()] = P{p.x() * scale, -p.y() * scale};  // pictures run downwards
        }
        for (ChemicalDiagram::const_node_iterator n = d_.begin_nodes(); n != d_.end_nodes(); ++n)
            if (const DiagramCircle* c = dynamic_cast<const DiagramCircle*>(n->unhand())) circles_.push_back(c);
        for (ChemicalDiagram::const_node_iterator n = d_.begin_nodes(); n != d_.end_nodes(); ++n)
            labels_[n->unhand()] = label_of(*n);
        bool first = true;
        for (ChemicalDiagram::const_node_iterator n = d_.begin_nodes(); n != d_.end_nodes(); ++n) {
            const P p = at(*n);
            const Label& l = labels_[n->unhand()];
            const double pad = 0.2 * bond_;
            P lo{p.x - std::max(l.left, pad), p.y - std::max(l.top, pad)};
            P hi{p.x + std::max(l.right, pad), p.y + std::max(l.bottom, pad)};
            if (dynamic_cast<const DiagramFrame*>(n->unhand()) != nullptr) {
                lo = lo - P{0.6 * bond_, 0.6 * bond_};
                hi = hi + P{0.6 * bond_, 0.6 * bond_};
            }
            if (first) {
                min_ = lo;
                max_ = hi;
                first = false;
            }
            min_ = P{std::min(min_.x, lo.x), std::min(min_.y, lo.y)};
            max_ = P{std::max(max_.x, hi.x), std::max(max_.y, hi.y)};
        }
        const double margin = 0.5 * bond_;
        min_ = min_ - P{margin, margin};
        max_ = max_ + P{margin, margin};
    }

    Label label_of(const HDiagramNode& node) const {
        Label l;
        const double h = 0.5 * font_;
        if (const DiagramAtom* atom = dynamic_cast<const DiagramAtom*>(node.unhand())) {
            // A charged carbon shows its label even where the chain would hide it.
            if (!all_carbons_ && !d_.is_visible_carbon(node) && atom->formal_charge() == 0) return l;
            l.shown = true;
            l.main = atom->centre_label();
            const std::pair<std::string, std::string> side = atom->side_label();
            l.hydrogens = side.first;
            l.count = side.second;
            l.charge = atom->top_right_label();
            l.hydrogens_left = !l.hydrogens.empty() && !d_.is_right_bonded_node(node);
            // Hydrogens never face a symbol: both labels would claim the bond between them.
            if (!l.hydrogens.empty()) {
                bool symbol_left = false, symbol_right = false;
                for (const HDiagramNode& m : node->neighbours()) {
                    if (dynamic_cast<const DiagramSymbol*>(m.unhand()) == nullptr) continue;
                    (at(m).x < at(node).x ? symbol_left : symbol_right) = true;
                }
                if (l.hydrogens_left && symbol_left && !symbol_right) l.hydrogens_left = false;
                if (!l.hydrogens_left && symbol_right && !symbol_left) l.hydrogens_left = true;
            }
            const double main_half = 0.31 * font_ * static_cast<double>(l.main.size());
            const double hydrogen_width =
                l.hydrogens.empty() ? 0.0 : 0.66 * font_ + 0.42 * font_ * static_cast<double>(l.count.size());
            const double charge_width = 0.45 * font_ * static_cast<double>(l.charge.size());
            l.left = main_half + (l.hydrogens_left ? hydrogen_width : 0.0);
            l.right = main_half + (l.hydrogens_left ? 0.0 : hydrogen_width) + charge_width;
            l.top = h + (l.charge.empty() ? 0.0 : 0.25 * font_);
            l.bottom = h + (l.count.empty() ? 0.0 : 0.2 * font_);
        } else if (const DiagramSymbol* symbol = dynamic_cast<const DiagramSymbol*>(node.unhand())) {
            symbol_label(node, *symbol, l);
        }
        return l;
    }

    // A symbol reads away from its bonds: bonds from the left only give the
    // left label ("CF3") with its first letter on the symbol's point, bonds
    // from the right only the right label ("F3C") with its last letter
    // there, bonds from both sides or none the centre label, centred.
    // Hydrogens and a charge go after the text, or before the right label.
    void symbol_label(const HDiagramNode& node, const DiagramSymbol& symbol, Label& l) const {
        const P p = at(node);
        bool from_left = false, from_right = false;
        for (const HDiagramNode& m : node->neighbours()) {
            const double dx = at(m).x - p.x;
            if (dx < -0.1 * bond_) from_left = true;
            if (dx > 0.1 * bond_) from_right = true;
        }
        enum { Left, Right, Centre } side = from_left == from_right ? Centre : (from_left ? Left : Right);
        std::string label = side == Left ? symbol.left_label() : (side == Right ? symbol.right_label() : "");
        if (label.empty()) {
            label = symbol.centre_label();
            side = Centre;
        }
        const int nh = symbol.nterminal_hydrogens();
        const std::string hydrogens = nh <= 0 ? "" : (nh == 1 ? "H" : "H<sub>" + std::to_string(nh) + "</sub>");
        const int q = symbol.formal_charge();
        std::string charge;
        if (q != 0)
            charge = "<sup>" + (q > 1 || q < -1 ? std::to_string(q < 0 ? -q : q) : std::string()) +
                     (q > 0 ? "+" : "\xe2\x88\x92") + "</sup>";
        l.shown = true;
        l.main = side == Right ? charge + hydrogens + label : label + hydrogens + charge;
        const std::vector<Glyph> g = glyphs(l.main);
        double width = 0.0;
        for (const Glyph& k : g) width = std::max(width, k.x + k.width);
        width *= font_;
        const Glyph* anchor = nullptr;
        for (const Glyph& k : g)
            if (k.full && (anchor == nullptr || side == Right)) anchor = &k;
        if (side == Centre || anchor == nullptr)
            l.text_start = -0.5 * width;
        else
            l.text_start = -(anchor->x + 0.5 * anchor->width) * font_;
        l.left = -l.text_start;
        l.right = l.text_start + width;
        const bool has_sub = l.main.find("<sub>") != std::string::npos;
        const bool has_sup = l.main.find("<sup>") != std::string::npos;
        l.top = 0.5 * font_ + (has_sup ? 0.25 * font_ : 0.0);
        l.bottom = 0.5 * font_ + (has_sub ? 0.2 * font_ : 0.0);
    }

    // The radius of a ring circle as drawn: part of the polygon's inner
    // radius, measured in the picture; 0 when it is not drawn.
    double circle_radius(const HDiagramNode& node) const {
        const DiagramCircle* circle = dynamic_cast<const DiagramCircle*>(node.unhand());
        if (circle == nullptr || circle->atoms().size() < 3) return 0.0;
        const P p = at(node);
        double nearest = 1e300;
        for (const HDiagramNode& a : circle->atoms())
            if (placed_.count(a.unhand()) != 0) nearest = std::min(nearest, length(at(a) - p));
        if (nearest >= 1e300) return 0.0;
        return 0.62 * nearest *
               std::sin(3.141592653589793 * (0.5 - 1.0 / static_cast<double>(circle->atoms().size())));
    }

    // Whether both ends of `e` are atoms of one drawn ring circle.
    bool inside_circle(const HDiagramEdge& e) const {
        for (const DiagramCircle* c : circles_)
            if (c->has_node(e->node1()) && c->has_node(e->node2())) return true;
        return false;
    }

    // The part of the way from `from` towards `to` that leaves `from`'s label box.
    double clearance(const HDiagramNode& from, P direction) const {
        // A bond to a ring circle (a metal's pi bond) stops at the drawn rim.
        const double rim = circle_radius(from);
        if (rim > 0.0) return rim + 0.1 * bond_;
        const Label& l = labels_.at(from.unhand());
        if (!l.shown) return 0.0;
        const double gap = 0.12 * font_;
        double t = 1e9;
        if (direction.x > 1e-9) t = std::min(t, (l.right + gap) / direction.x);
        if (direction.x < -1e-9) t = std::min(t, (l.left + gap) / -direction.x);
        if (direction.y > 1e-9) t = std::min(t, (l.bottom + gap) / direction.y);
        if (direction.y < -1e-9) t = std::min(t, (l.top + gap) / -direction.y);
        return t;
    }

    static void line(std::ostringstream& out, P a, P b, double width, const char* dash = nullptr) {
        out << "<line x1=\"" << num(a.x) << "\" y1=\"" << num(a.y) << "\" x2=\"" << num(b.x) << "\" y2=\""
            << num(b.y) << "\" stroke=\"#000000\" stroke-width=\"" << num(width) << "\" stroke-linecap=\"round\"";
        if (dash != nullptr) out << " stroke-dasharray=\"" << dash << "\"";
        out << "/>";
    }

    // +1 or -1: the side of the bond a-b on which its other neighbours lie
    // (a ring's inside), 0 when they balance.
    int inner_side(const HDiagramEdge& e, P a, P b) const {
        const HDiagramNode n1 = e->node1(), n2 = e->node2();
        int sum = 0;
        for (const HDiagramNode& end : {n1, n2})
            for (const HDiagramNode& m : end->neighbours()) {
                if (m == n1 || m == n2 || dynamic_cast<const DiagramAtom*>(m.unhand()) == nullptr) continue;
                const double c = cross(b - a, at(m) - a);
                if (std::fabs(c) > 1e-6) sum += c > 0 ? 1 : -1;
            }
        return sum > 0 ? 1 : (sum < 0 ? -1 : 0);
    }

    void draw_edge(const HDiagramEdge& e, std::ostringstream& out) const {
        const HDiagramNode n1 = e->node1(), n2 = e->node2();
        P a = at(n1), b = at(n2);
        const P d = b - a;
        const double l = length(d);
        if (l < 1e-9) return;
        const P u = d * (1.0 / l);
        const P normal{-u.y, u.x};
        const double t1 = clearance(n1, u), t2 = clearance(n2, u * -1.0);
        if (t1 + t2 >= l) return;  // labels touch: nothing of the bond is visible
        const P s = a + u * t1, f = b - u * t2;
        const double w = 0.045 * bond_;
        const double offset = 0.17 * bond_;
        const int type = static_cast<int>(e->type());
        out << "<g class=\"bond\" data-type=\"" << type << "\">";
        const bool to_circle = dynamic_cast<const DiagramCircle*>(n1.unhand()) != nullptr ||
                               dynamic_cast<const DiagramCircle*>(n2.unhand()) != nullptr;
        if (type == PI_BOND || to_circle) {
            line(out, s, f, w, "3,3");
        } else if (type == AROMATIC_BOND && inside_circle(e)) {
            line(out, s, f, w);  // the circle shows the ring's aromaticity
        } else if (type == DOUBLE_BOND || type == AROMATIC_BOND || type == DELOCALISED_BOND) {
            const char* dash = type == DOUBLE_BOND ? nullptr : "4,3";
            const int side = inner_side(e, a, b);
            const bool both_labelled = labels_.at(n1.unhand()).shown && labels_.at(n2.unhand()).shown;
            if (side == 0 || (both_labelled && type == DOUBLE_BOND)) {
                // A terminal or balanced double bond: two lines either side of the axis.
                const P o = normal * (0.5 * offset);
                line(out, s + o, f + o, w);
                line(out, s - o, f - o, w, dash);
            } else {
                line(out, s, f, w);
                // The inner line, inside the ring or the bend, shortened at ends without labels.
                const P o = normal * (offset * side);
                const double trim = 0.14 * l;
                const P s2 = a + u * std::max(t1, trim) + o, f2 = b - u * std::max(t2, trim) + o;
                line(out, s2, f2, w, dash);
            }
        } else if (type == TRIPLE_BOND || type == QUADRUPLE_BOND) {
            const P o = normal * offset;
            line(out, s, f, w);
            line(out, s + o, f + o, w);
            line(out, s - o, f - o, w);
        } else {
            line(out, s, f, w);
        }
        out << "</g>\n";
    }

    void text(std::ostringstream& out, const std::string& content, P p, const char* anchor, double size,
              const char* colour) const {
        out << "<text x=\"" << num(p.x) << "\" y=\"" << num(p.y) << "\" font-size=\"" << num(size)
            << "\" text-anchor=\"" << anchor << "\" fill=\"" << colour << "\">" << content << "</text>";
    }

    void draw_node(const HDiagramNode& n, std::ostringstream& out) const {
        const P p = at(n);
        if (const DiagramCircle* circle = dynamic_cast<const DiagramCircle*>(n.unhand())) {
            // Inside the polygon, with room to the bonds.
            const double r = circle_radius(n);
            if (r > 0.0 && circle->atoms().size() >= 3)
                out << "<circle class=\"ring\" cx=\"" << num(p.x) << "\" cy=\"" << num(p.y) << "\" r=\"" << num(r)
                    << "\" fill=\"none\" stroke=\"#000000\" stroke-width=\"" << num(0.045 * bond_) << "\"/>\n";
            return;
        }
        if (const DiagramFrame* frame = dynamic_cast<const DiagramFrame*>(n.unhand())) {
            // Around the members that stand in the diagram, as the frame's rectangle is.
            std::vector<P> corners;
            for (const HDiagramNode& m : frame->nodes())
                if (placed_.count(m.unhand()) != 0) corners.push_back(at(m));
            if (corners.empty()) return;
            P a = corners[0], b = corners[0];
            for (const P& c : corners) {
                a = P{std::min(a.x, c.x), std::min(a.y, c.y)};
                b = P{std::max(b.x, c.x), std::max(b.y, c.y)};
            }
            a = a - P{0.5 * bond_, 0.5 * bond_};
            b = b + P{0.5 * bond_, 0.5 * bond_};
            const double tick = 0.15 * bond_;
            out << "<g class=\"frame\"><path d=\"M" << num(a.x + tick) << "," << num(a.y) << " H" << num(a.x) << " V"
                << num(b.y) << " H" << num(a.x + tick) << " M" << num(b.x - tick) << "," << num(a.y) << " H"
                << num(b.x) << " V" << num(b.y) << " H" << num(b.x - tick)
                << "\" fill=\"none\" stroke=\"#000000\" stroke-width=\"" << num(0.045 * bond_) << "\"/>";
            text(out, escaped(std::to_string(frame->multiplier())), P{b.x + 0.1 * bond_, b.y + 0.2 * font_}, "start",
                 0.8 * font_, "#000000");
            out << "</g>\n";
            return;
        }
        const Label& l = labels_.at(n.unhand());
        if (!l.shown) return;
        const double baseline = p.y + 0.36 * font_;
        if (dynamic_cast<const DiagramSymbol*>(n.unhand()) != nullptr) {
            double width = 0.0;
            const std::string content = rich_text(l.main, font_, &width);
            out << "<g class=\"symbol\" data-box=\"" << num(p.x - l.left) << " " << num(p.y - l.top) << " "
                << num(l.left + l.right) << " " << num(l.top + l.bottom) << "\">";
            text(out, content, P{p.x + l.text_start, baseline}, "start", font_, "#000000");
            out << "</g>\n";
            return;
        }
        const char* colour = colour_of(l.main);
        out << "<g class=\"atom\" data-box=\"" << num(p.x - l.left) << " " << num(p.y - l.top) << " "
            << num(l.left + l.right) << " " << num(l.top + l.bottom) << "\">";
        text(out, escaped(l.main), P{p.x, baseline}, "middle", font_, colour);
        const double main_half = 0.31 * font_ * static_cast<double>(l.main.size());
        double right_edge = p.x + main_half;
        if (!l.hydrogens.empty()) {
            std::string content = "H";
            if (!l.count.empty())
                content += "<tspan font-size=\"" + num(0.7 * font_) + "\" dy=\"" + num(0.25 * font_) + "\">" +
                           escaped(l.count) + "</tspan>";
            if (l.hydrogens_left) {
                text(out, content, P{p.x - main_half, baseline}, "end", font_, colour);
            } else {
                text(out, content, P{right_edge, baseline}, "start", font_, colour);
                right_edge += 0.66 * font_ + 0.42 * font_ * static_cast<double>(l.count.size());
            }
        }
        if (!l.charge.empty()) {
            // The U+2212 minus sign reads better than a hyphen in a superscript.
            std::string charge = l.charge[0] == '-' ? "&#8722;" + l.charge.substr(1) : l.charge;
            text(out, charge, P{right_edge, p.y - 0.3 * font_}, "start", 0.7 * font_, colour);
        }
        out << "</g>\n";
    }

    const ChemicalDiagram& d_;
    double bond_;
    double font_;
    bool all_carbons_;
    std::map<const DiagramNode*, P> placed_;
    std::map<const DiagramNode*, Label> labels_;
    std::vector<const DiagramCircle*> circles_;
    P min_, max_;
};

}  // namespace

std::string SvgWriter::svg(const ChemicalDiagram& diagram) const {
    Picture picture(diagram, bond_length_, show_all_carbons_);
    return picture.draw(title_);
}

void SvgWriter::write(const ChemicalDiagram& diagram, std::ostream& out) const { out << svg(diagram); }

void SvgWriter::write(const ChemicalDiagram& diagram, const std::string& path) const {
    std::ofstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("SvgWriter::write cannot open " + path);
    file << svg(diagram);
    if (!file) throw std::runtime_error("SvgWriter::write cannot write " + path);
}

}  // namespace draw
}  // namespace molcryst
