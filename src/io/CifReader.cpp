#include "molcryst/io/CifReader.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "GemmiCif.h"
#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/CrystalSymmetryOperator.h"
#include "molcryst/geometry/Spacegroup.h"

namespace molcryst {

CifError::CifError(const std::string& source, int line, const std::string& reason)
    : std::runtime_error(source + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + reason),
      source_(source),
      line_(line > 0 ? line : 0),
      reason_(reason) {}

namespace {

namespace cif = gemmi::cif;

const double pi = 3.14159265358979323846;

/// Reads the values of one block, telling faults against the block's source.
class BlockReader {
public:
    BlockReader(const std::string& source, cif::Block& block, int line) : source_(source), block_(block) {
        result_.name = block.name;
        result_.line = line;
    }

    CifBlock read() {
        read_cell();
        read_symmetry();
        result_.cell = Cell(result_.lengths[0].value(), result_.lengths[1].value(), result_.lengths[2].value(),
                            Angle::from_degrees(result_.angles[0].value()),
                            Angle::from_degrees(result_.angles[1].value()),
                            Angle::from_degrees(result_.angles[2].value()), spacegroup_);
        read_atoms();
        read_aniso();
        check_disorder_occupancies();
        return result_;
    }

private:
    [[noreturn]] void fail(int line, const std::string& reason) const {
        throw CifError(source_, line > 0 ? line : result_.line, reason);
    }
    void warn(int line, const std::string& reason) {
        result_.warnings.push_back(CifError(source_, line > 0 ? line : result_.line, reason).what());
    }

    /// The first of `tags` present as a name-value pair, or null.
    const cif::Item* pair_item(std::initializer_list<const char*> tags) const {
        for (const char* tag : tags) {
            const cif::Item* item = block_.find_pair_item(tag);
            if (item != nullptr) return item;
        }
        return nullptr;
    }
    std::string pair_text(std::initializer_list<const char*> tags) const {
        const cif::Item* item = pair_item(tags);
        if (item == nullptr || cif::is_null(item->pair[1])) return std::string();
        return cif::as_string(item->pair[1]);
    }

    /// A number with its uncertainty from a raw value; `what` names it.
    UncertainValue number(const std::string& raw, int line, const std::string& what) const {
        if (cif::is_null(raw)) fail(line, what + " has no value");
        const std::string text = cif::as_string(raw);
        bool ok = false;
        UncertainValue v = UncertainValue::parse(text, &ok);
        if (!ok || !std::isfinite(v.value())) fail(line, what + " is not a number: '" + text + "'");
        return v;
    }

    void read_cell() {
        static const char* const names[6] = {"_cell_length_a", "_cell_length_b", "_cell_length_c",
                                             "_cell_angle_alpha", "_cell_angle_beta", "_cell_angle_gamma"};
        for (int i = 0; i < 6; ++i) {
            const cif::Item* item = block_.find_pair_item(names[i]);
            if (item == nullptr) fail(0, std::string("no ") + names[i] + ": the cell is missing");
            const UncertainValue v = number(item->pair[1], item->line_number, names[i]);
            if (i < 3) {
                if (!(v.value() > 0.0 && v.value() <= CifReader::max_cell_length))
                    fail(item->line_number, std::string(names[i]) + " is out of range: " + cif::as_string(item->pair[1]));
                result_.lengths[i] = v;
            } else {
                if (!(v.value() > 0.0 && v.value() < 180.0))
                    fail(item->line_number, std::string(names[i]) + " is out of range: " + cif::as_string(item->pair[1]));
                result_.angles[i - 3] = v;
            }
        }
        // The angles must leave the cell a volume: 1 - cos^2 a - cos^2 b - cos^2 g + 2 cos a cos b cos g > 0.
        double c[3];
        for (int i = 0; i < 3; ++i) c[i] = std::cos(result_.angles[i].value() * pi / 180.0);
        const double f = 1.0 - c[0] * c[0] - c[1] * c[1] - c[2] * c[2] + 2.0 * c[0] * c[1] * c[2];
        if (!(f > 1e-6)) fail(0, "the cell angles leave the cell no volume");
        const std::string z = pair_text({"_cell_formula_units_Z"});
        if (!z.empty()) {
            const int value = std::atoi(z.c_str());
            if (value >= 1 && value <= 100000) result_.z = value;
        }
        // The formulae as deposited, for the report to compare with what the sites hold.
        result_.formula_sum = pair_text({"_chemical_formula_sum"});
        result_.formula_moiety = pair_text({"_chemical_formula_moiety"});
        const cif::Item* volume = block_.find_pair_item("_cell_volume");
        if (volume != nullptr && !cif::is_null(volume->pair[1])) {
            bool ok = false;
            UncertainValue v = UncertainValue::parse(cif::as_string(volume->pair[1]), &ok);
            if (ok && std::isfinite(v.value()) && v.value() > 0.0) result_.published_volume = v.value();
        }
    }

    static Spacegroup::System system_from_text(std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char ch) { return std::tolower(ch); });
        if (text == "monoclinic") return Spacegroup::Monoclinic;
        if (text == "orthorhombic") return Spacegroup::Orthorhombic;
        if (text == "tetragonal") return Spacegroup::Tetragonal;
        if (text == "trigonal" || text == "rhombohedral") return Spacegroup::Trigonal;
        if (text == "hexagonal") return Spacegroup::Hexagonal;
        if (text == "cubic") return Spacegroup::Cubic;
        return Spacegroup::Triclinic;
    }

    static gemmi::GroupOps group_of(const std::vector<CrystalSymmetryOperator>& operators) {
        std::vector<gemmi::Op> ops;
        for (const CrystalSymmetryOperator& op : operators) ops.push_back(gemmi::parse_triplet(op.triplet()));
        return gemmi::split_centering_vectors(ops);
    }

    void read_symmetry() {
        std::vector<CrystalSymmetryOperator> operators;
        const bool modern = block_.find("", {"_space_group_symop_operation_xyz"}).ok();
        cif::Table table = block_.find("", {modern ? "_space_group_symop_operation_xyz" : "_symmetry_equiv_pos_as_xyz"});
        result_.hall_symbol = pair_text({"_space_group_name_Hall", "_symmetry_space_group_name_Hall"});
        result_.hm_name = pair_text({"_space_group_name_H-M_alt", "_symmetry_space_group_name_H-M"});
        const gemmi::SpaceGroup* named = nullptr;
        if (!result_.hm_name.empty()) named = gemmi::find_spacegroup_by_name(result_.hm_name);
        const int symmetry_line = table.ok() && table.loop_item != nullptr ? table.loop_item->line_number : 0;
        if (table.ok() && table.length() > 0) {
            result_.symmetry_source = "operators";
            if (table.length() > 192) fail(symmetry_line, "more than 192 symmetry operators");
            for (auto row : table) {
                if (cif::is_null(row[0])) fail(symmetry_line, "a symmetry operator has no value");
                const std::string text = cif::as_string(row[0]);
                CrystalSymmetryOperator op;
                if (!CrystalSymmetryOperator::parse(text, op))
                    fail(symmetry_line, "cannot read the symmetry operator '" + text + "'");
                operators.push_back(op);
                result_.operator_triplets.push_back(text);
            }
            check_group(operators, symmetry_line);
            // A name or symbol that describes another group contradicts the list.
            gemmi::GroupOps listed = group_of(operators);
            if (!result_.hall_symbol.empty()) {
                try {
                    if (!gemmi::symops_from_hall(result_.hall_symbol.c_str()).is_same_as(listed))
                        fail(symmetry_line, "the symmetry operators contradict the Hall symbol '" + result_.hall_symbol + "'");
                } catch (const CifError&) {
                    throw;
                } catch (const std::exception&) {
                    warn(0, "cannot read the Hall symbol '" + result_.hall_symbol + "'; the operators are used");
                }
            } else if (named != nullptr && !named->operations().is_same_as(listed)) {
                fail(symmetry_line,
                     "the symmetry operators contradict the Hermann-Mauguin name '" + result_.hm_name + "'");
            }
        } else if (!result_.hall_symbol.empty()) {
            result_.symmetry_source = "Hall symbol";
            gemmi::GroupOps ops;
            try {
                ops = gemmi::symops_from_hall(result_.hall_symbol.c_str());
            } catch (const std::exception& e) {
                fail(pair_item({"_space_group_name_Hall", "_symmetry_space_group_name_Hall"})->line_number,
                     "cannot read the Hall symbol '" + result_.hall_symbol + "'");
            }
            for (const gemmi::Op& op : ops) take_operator(op, operators);
        } else if (named != nullptr) {
            result_.symmetry_source = "Hermann-Mauguin name";
            for (const gemmi::Op& op : named->operations()) take_operator(op, operators);
        } else if (!result_.hm_name.empty()) {
            fail(pair_item({"_space_group_name_H-M_alt", "_symmetry_space_group_name_H-M"})->line_number,
                 "unknown spacegroup '" + result_.hm_name + "' and no symmetry operators");
        } else {
            fail(0, "no symmetry: no operators, Hall symbol or Hermann-Mauguin name");
        }

        // Name, number and system: as deposited where given, else from the tables.
        const gemmi::SpaceGroup* known = named;
        if (known == nullptr) known = gemmi::find_spacegroup_by_ops(group_of(operators));
        std::string name = result_.hm_name;
        if (name.empty() && known != nullptr) name = known->xhm();
        if (name.empty()) name = result_.hall_symbol;
        int number = 0;
        const std::string number_text = pair_text({"_space_group_IT_number", "_symmetry_Int_Tables_number"});
        if (!number_text.empty()) number = std::atoi(number_text.c_str());
        if ((number < 1 || number > 230) && known != nullptr) number = known->number;
        if (number < 1 || number > 230) number = 0;
        std::string system = pair_text({"_space_group_crystal_system", "_symmetry_cell_setting"});
        if (system.empty() && known != nullptr) system = known->crystal_system_str();
        spacegroup_ = Spacegroup(name, number, system_from_text(system), operators);
    }

    void take_operator(const gemmi::Op& op, std::vector<CrystalSymmetryOperator>& operators) {
        const std::string text = op.triplet();
        CrystalSymmetryOperator parsed;
        if (!CrystalSymmetryOperator::parse(text, parsed)) fail(0, "cannot use the symmetry operator '" + text + "'");
        operators.push_back(parsed);
        result_.operator_triplets.push_back(text);
    }

    /// The operators must hold the identity once and close under products,
    /// each modulo lattice translations.
    void check_group(const std::vector<CrystalSymmetryOperator>& operators, int line) {
        std::map<std::string, int> seen;
        for (std::size_t i = 0; i < operators.size(); ++i) {
            const std::string key = reduced_key(operators[i]);
            if (!seen.emplace(key, static_cast<int>(i)).second)
                fail(line, "the symmetry operator '" + result_.operator_triplets[i] + "' is listed twice");
        }
        bool identity = false;
        for (const CrystalSymmetryOperator& op : operators) identity = identity || reduced_key(op) == reduced_key(CrystalSymmetryOperator());
        if (!identity) fail(line, "the symmetry operators do not include x,y,z");
        for (const CrystalSymmetryOperator& a : operators)
            for (const CrystalSymmetryOperator& b : operators)
                if (seen.find(reduced_key(product(a, b))) == seen.end())
                    fail(line, "the symmetry operators do not form a group");
    }

    static CrystalSymmetryOperator product(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b) {
        Matrix<int, 3, 3> r;
        Vector<double, 3> t;
        for (int i = 0; i < 3; ++i) {
            double sum = a.translation()[i];
            for (int j = 0; j < 3; ++j) {
                int v = 0;
                for (int k = 0; k < 3; ++k) v += a.rotation()(i, k) * b.rotation()(k, j);
                r(i, j) = v;
                sum += a.rotation()(i, j) * b.translation()[j];
            }
            t[i] = sum;
        }
        return CrystalSymmetryOperator(r, t);
    }

    /// The rotation and the translation in twelfths, brought into [0, 12).
    static std::string reduced_key(const CrystalSymmetryOperator& op) {
        std::string key;
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) key += std::to_string(op.rotation()(i, j)) + ",";
            long long twelfths = std::llround(op.translation()[i] * 12.0) % 12;
            if (twelfths < 0) twelfths += 12;
            key += std::to_string(twelfths) + ";";
        }
        return key;
    }

    /// The element and charge of a type symbol ("O2-", "Na1+", "Cl") or of
    /// a label ("C12A", "Cl3", "HO1" is hydrogen); false if neither names one.
    static bool element_of(const std::string& text, bool is_label, Element& element, int& charge) {
        std::size_t letters = 0;
        while (letters < text.size() && letters < 2 && std::isalpha(static_cast<unsigned char>(text[letters]))) ++letters;
        if (letters == 0) return false;
        // Two letters make an element only in the form "Cl": a capital second
        // letter in a label starts the rest of the name ("HO1", "CA"). A type
        // symbol of two letters is that element or none.
        const bool second_small = letters == 2 && std::islower(static_cast<unsigned char>(text[1]));
        const bool two = letters == 2 && (!is_label || second_small);
        const std::size_t last = !is_label && second_small ? 2 : 1;
        for (std::size_t n = two ? 2 : 1; n >= last; --n) {
            try {
                element = Element(text.substr(0, n));
            } catch (const std::exception&) {
                continue;
            }
            charge = 0;
            if (!is_label) {
                // The rest of a type symbol may be a charge: digits then a sign.
                std::size_t i = n;
                int digits = 0;
                while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])) && digits < 2) {
                    charge = charge * 10 + (text[i] - '0');
                    ++i;
                    ++digits;
                }
                if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
                    if (digits == 0) charge = 1;
                    if (text[i] == '-') charge = -charge;
                } else {
                    charge = 0;
                }
            }
            return true;
        }
        return false;
    }

    void read_atoms() {
        cif::Table table =
            block_.find("_atom_site_", {"label", "?type_symbol", "?fract_x", "?fract_y", "?fract_z", "?occupancy",
                                        "?U_iso_or_equiv", "?B_iso_or_equiv", "?disorder_assembly",
                                        "?disorder_group", "?symmetry_multiplicity", "?adp_type"});
        if (!table.ok()) fail(0, "no atom sites with labels (_atom_site_label)");
        const int line = table.loop_item != nullptr ? table.loop_item->line_number : result_.line;
        if (!table.has_column(2) || !table.has_column(3) || !table.has_column(4))
            fail(line, "the atom sites have no fractional coordinates (_atom_site_fract_x, y, z)");
        if (table.length() == 0) fail(line, "no atom sites");
        if (table.length() > CifReader::max_atoms) fail(line, "more than " + std::to_string(CifReader::max_atoms) + " atom sites");
        std::set<std::string> labels;
        result_.atoms.reserve(table.length());
        for (auto row : table) {
            CifAtomSite site;
            site.line = line;
            if (cif::is_null(row[0])) fail(line, "an atom site has no label");
            site.label = cif::as_string(row[0]);
            // Deposited files do repeat a label now and then (a riding and a
            // refined hydrogen both "H20"): both sites are kept, as written.
            if (!labels.insert(site.label).second)
                warn(line, "duplicate atom label '" + site.label + "': both sites are kept");
            const std::string who = "atom '" + site.label + "': ";
            if (row.has2(1)) {
                site.type_symbol = cif::as_string(row[1]);
                if (!element_of(site.type_symbol, false, site.element, site.formal_charge))
                    fail(line, who + "unknown element '" + site.type_symbol + "'");
            } else if (!element_of(site.label, true, site.element, site.formal_charge)) {
                fail(line, who + "no element can be read from the label");
            }
            static const char* const axes[3] = {"_atom_site_fract_x", "_atom_site_fract_y", "_atom_site_fract_z"};
            for (int k = 0; k < 3; ++k) {
                site.fract[k] = number(row[2 + k], line, who + axes[k]);
                if (std::fabs(site.fract[k].value()) > CifReader::max_coordinate)
                    fail(line, who + axes[k] + " is out of range: " + cif::as_string(row[2 + k]));
            }
            if (row.has2(5)) {
                site.occupancy = number(row[5], line, who + "_atom_site_occupancy");
                // Deposited files have them (site-symmetry factors, typing slips):
                // told, and the site kept as given.
                if (!(site.occupancy.value() >= 0.0 && site.occupancy.value() <= 1.0))
                    warn(line, who + "occupancy " + cif::as_string(row[5]) + " is out of range (0 to 1)");
            }
            if (row.has2(6)) {
                site.u_iso = number(row[6], line, who + "_atom_site_U_iso_or_equiv");
                site.displacement = CifAtomSite::Uiso;
            } else if (row.has2(7)) {
                const UncertainValue b = number(row[7], line, who + "_atom_site_B_iso_or_equiv");
                site.u_iso = UncertainValue(b.value() / (8.0 * pi * pi));
                site.displacement = CifAtomSite::Biso;
            }
            if (row.has2(8)) site.disorder_assembly = cif::as_string(row[8]);
            if (row.has2(9)) {
                const std::string group = cif::as_string(row[9]);
                char* end = nullptr;
                const long value = std::strtol(group.c_str(), &end, 10);
                if (end == group.c_str() || *end != '\0' || value < -999 || value > 999)
                    warn(line, who + "disorder group '" + group + "' is not a number and is ignored");
                else
                    site.disorder_group = static_cast<int>(value);
            }
            if (row.has2(10)) {
                const std::string m = cif::as_string(row[10]);
                const int value = std::atoi(m.c_str());
                if (value >= 1 && value <= 192) site.multiplicity = value;
            }
            result_.atoms.push_back(site);
        }
    }

    /// The groups of one disorder assembly are alternatives: their
    /// occupancies (each group's first site) should sum to 1 at most. A sum
    /// above (beyond rounding of the deposited digits) is told; the sites stay.
    void check_disorder_occupancies() {
        std::vector<std::string> codes;
        std::map<std::string, std::map<int, double> > groups;
        std::map<std::string, int> first_line;
        for (const CifAtomSite& site : result_.atoms) {
            if (site.disorder_group == 0) continue;
            if (groups.count(site.disorder_assembly) == 0) {
                codes.push_back(site.disorder_assembly);
                first_line[site.disorder_assembly] = site.line;
            }
            groups[site.disorder_assembly].emplace(site.disorder_group, site.occupancy.value());
        }
        for (const std::string& code : codes) {
            double sum = 0.0;
            for (const auto& group : groups[code]) sum += group.second;
            if (sum > 1.0 + 1e-6) {
                std::ostringstream text;
                text << "disorder assembly '" << (code.empty() ? "." : code) << "': the occupancies of its "
                     << groups[code].size() << " groups sum to " << sum << ", over 1";
                warn(first_line[code], text.str());
            }
        }
    }

    /// Anisotropic displacement parameters, joined to the sites by label.
    void read_aniso() {
        const bool as_b = !block_.find("_atom_site_aniso_", {"label", "U_11"}).ok();
        cif::Table table = as_b ? block_.find("_atom_site_aniso_", {"label", "B_11", "B_22", "B_33", "B_12", "B_13", "B_23"})
                                : block_.find("_atom_site_aniso_", {"label", "U_11", "U_22", "U_33", "U_12", "U_13", "U_23"});
        if (!table.ok()) return;
        const int line = table.loop_item != nullptr ? table.loop_item->line_number : result_.line;
        std::map<std::string, std::size_t> index;
        for (std::size_t i = 0; i < result_.atoms.size(); ++i) index.emplace(result_.atoms[i].label, i);
        for (auto row : table) {
            const std::string label = cif::as_string(row[0]);
            auto found = index.find(label);
            if (found == index.end()) {
                warn(line, "anisotropic parameters for an unknown atom '" + label + "' are ignored");
                continue;
            }
            CifAtomSite& site = result_.atoms[found->second];
            for (int k = 0; k < 6; ++k) {
                UncertainValue u = number(row[1 + k], line, "atom '" + label + "': anisotropic parameter");
                if (as_b) u = UncertainValue(u.value() / (8.0 * pi * pi));
                site.u_aniso[k] = u;
            }
            site.displacement = CifAtomSite::Uaniso;
        }
    }

    const std::string& source_;
    cif::Block& block_;
    CifBlock result_;
    Spacegroup spacegroup_;
};

/// The line a gemmi message starts with, "SOURCE:LINE...", and the rest.
int split_gemmi_message(const std::string& source, std::string& message) {
    if (message.compare(0, source.size(), source) != 0 || message.size() <= source.size() ||
        message[source.size()] != ':')
        return 0;
    std::size_t i = source.size() + 1;
    int line = 0;
    while (i < message.size() && std::isdigit(static_cast<unsigned char>(message[i])) && line < 100000000)
        line = line * 10 + (message[i++] - '0');
    while (i < message.size() && (message[i] == ':' || message[i] == ' ')) ++i;
    message = message.substr(i);
    return line;
}

}  // namespace

CifDocument CifReader::read_file(const std::string& path) {
    std::error_code code;
    if (std::filesystem::is_directory(path, code)) throw CifError(path, 0, "cannot read a directory");
    std::ifstream in(path, std::ios::binary);
    if (!in) throw CifError(path, 0, std::string("cannot open the file: ") + std::strerror(errno));
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    if (size < 0) throw CifError(path, 0, "cannot read the file (not a regular file)");
    if (size > max_file_bytes) throw CifError(path, 0, "the file is larger than 1 GiB");
    in.seekg(0, std::ios::beg);
    std::string text(static_cast<std::size_t>(size), '\0');
    if (size > 0 && !in.read(&text[0], size)) throw CifError(path, 0, "cannot read the file");
    return read_text(text, path);
}

CifDocument CifReader::read_text(const std::string& text, const std::string& source) {
    CifDocument document;
    document.source = source;
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) throw CifError(source, 0, "the file is empty");
    if (text.find('\0') != std::string::npos) {
        const int line = 1 + static_cast<int>(std::count(text.begin(), text.begin() + text.find('\0'), '\n'));
        throw CifError(source, line, "not a CIF file: it holds binary data");
    }
    cif::Document doc;
    try {
        doc = cif::read_memory(text.data(), text.size(), source.c_str());
    } catch (const tao::pegtl::parse_error& e) {
        const int line = e.positions().empty() ? 0 : static_cast<int>(e.positions().front().line);
        throw CifError(source, line, "syntax error: " + std::string(e.message()));
    } catch (const std::exception& e) {
        std::string message = e.what();
        const int line = split_gemmi_message(source, message);
        throw CifError(source, line, message);
    }
    // Block lines: the first item's line, less one for the data_ heading.
    for (cif::Block& block : doc.blocks) {
        const bool has_sites = block.find_values("_atom_site_label").item() != nullptr ||
                               block.find_values("_atom_site_fract_x").item() != nullptr;
        if (!has_sites) continue;
        const int line = block.items.empty() ? 0 : std::max(1, block.items.front().line_number - 1);
        try {
            document.blocks.push_back(BlockReader(source, block, line).read());
        } catch (const CifError& e) {
            document.skipped.push_back(e);
        }
    }
    if (document.blocks.empty()) {
        if (!document.skipped.empty()) throw document.skipped.front();
        throw CifError(source, 0, "no data block with atom sites");
    }
    return document;
}

}  // namespace molcryst
