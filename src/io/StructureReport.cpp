#include "molcryst/io/StructureReport.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <sstream>
#include <stdexcept>
#include <unordered_map>

#include "molcryst/contact/BondDistanceLimit.h"
#include "molcryst/contact/HBondCriterion.h"
#include "molcryst/edit/DisorderAtom.h"
#include "molcryst/geometry/Angle.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/AtomicDisplacementParameters.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/molecule/SybylAtomTyper.h"

namespace molcryst {

std::string symmetry_code(int op, const Vector<int, 3>& lattice) {
    // Another operator without a translation is its number alone, as refined
    // CIFs write it ("2" for 2_555); the identity stays "1_555".
    if (op != 0 && lattice[0] == 0 && lattice[1] == 0 && lattice[2] == 0) return std::to_string(op + 1);
    std::string code = std::to_string(op + 1) + "_";
    for (int k = 0; k < 3; ++k) {
        const int digit = lattice[k] + 5;
        code += digit >= 0 && digit <= 9 ? std::to_string(digit) : "(" + std::to_string(digit) + ")";
    }
    return code;
}

namespace {

const double pi = 3.14159265358979323846;
// Sites nearer than this to an image of themselves lie on a symmetry element;
// two images nearer than this are one atom.
const double same_place = 0.05;  // Angstrom
const double min_bond = 0.1;     // Angstrom: nearer is no bond but one disordered site over another
const std::size_t max_images = 20000000;

/// x -> R x + t, with R an integer matrix: a spacegroup operator with a
/// lattice translation, or a product of them.
struct Affine {
    Matrix<int, 3, 3> r;
    Vector<double, 3> t;

    static Affine identity() {
        Affine a;
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) a.r(i, j) = i == j ? 1 : 0;
            a.t[i] = 0.0;
        }
        return a;
    }
    static Affine of(const CrystalSymmetryOperator& op, const Vector<int, 3>& lattice) {
        Affine a;
        a.r = op.rotation();
        for (int i = 0; i < 3; ++i) a.t[i] = op.translation()[i] + lattice[i];
        return a;
    }
    Point apply(const Point& p) const {
        Point q;
        for (int i = 0; i < 3; ++i) q[i] = r(i, 0) * p[0] + r(i, 1) * p[1] + r(i, 2) * p[2] + t[i];
        return q;
    }
    /// This after `b`: x -> this(b(x)).
    Affine after(const Affine& b) const {
        Affine c;
        for (int i = 0; i < 3; ++i) {
            double s = t[i];
            for (int j = 0; j < 3; ++j) {
                int v = 0;
                for (int k = 0; k < 3; ++k) v += r(i, k) * b.r(k, j);
                c.r(i, j) = v;
                s += r(i, j) * b.t[j];
            }
            c.t[i] = s;
        }
        return c;
    }
    Affine inverse() const {
        // Symmetry rotations are unimodular: the inverse is the adjugate over the determinant.
        const Matrix<int, 3, 3>& m = r;
        const int det = m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) -
                        m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
                        m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0));
        Affine a;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) {
                const int i1 = (j + 1) % 3, i2 = (j + 2) % 3, j1 = (i + 1) % 3, j2 = (i + 2) % 3;
                a.r(i, j) = (m(i1, j1) * m(i2, j2) - m(i1, j2) * m(i2, j1)) / det;
            }
        for (int i = 0; i < 3; ++i) a.t[i] = -(a.r(i, 0) * t[0] + a.r(i, 1) * t[1] + a.r(i, 2) * t[2]);
        return a;
    }
};

/// Operators looked up by rotation and translation modulo the lattice.
class OperatorTable {
public:
    explicit OperatorTable(const std::vector<CrystalSymmetryOperator>& ops) : ops_(ops) {
        for (std::size_t i = 0; i < ops.size(); ++i) index_.emplace(key(ops[i].rotation(), ops[i].translation()), static_cast<int>(i));
    }
    /// The operator and lattice translation that `a` is; false if none.
    bool find(const Affine& a, int& op, Vector<int, 3>& lattice) const {
        auto found = index_.find(key(a.r, a.t));
        if (found == index_.end()) return false;
        op = found->second;
        for (int i = 0; i < 3; ++i) lattice[i] = static_cast<int>(std::llround(a.t[i] - ops_[op].translation()[i]));
        return true;
    }

private:
    static std::string key(const Matrix<int, 3, 3>& r, const Vector<double, 3>& t) {
        std::string k;
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) k += std::to_string(r(i, j)) + ",";
            long long steps = std::llround(t[i] * 24.0) % 24;  // translations are multiples of 1/24
            if (steps < 0) steps += 24;
            k += std::to_string(steps) + ";";
        }
        return k;
    }
    const std::vector<CrystalSymmetryOperator>& ops_;
    std::map<std::string, int> index_;
};

struct Image {
    int site, op;
    Vector<int, 3> lattice;
    Point orth;
};

/// A bond from a site as deposited to an image of another.
struct Link {
    int to, op;
    Vector<int, 3> lattice;
    double distance;
};

}  // namespace

/// Each molecule's images of the sites, as grown, and its bonds as pairs of
/// images, with their types once worked out.
struct StructureReport::Parts {
    struct Node {
        int site;
        int op;  // the image: operator and lattice translation applied to the site
        Vector<int, 3> lattice;
        Point frac;
    };
    std::vector<std::vector<Node> > nodes;
    std::vector<std::vector<std::pair<int, int> > > edges;
    std::vector<std::vector<BondType> > types;  // empty until worked out
};

namespace {

typedef StructureReport::Parts Parts;

/// The types of a molecule's bonds from the geometry rules, all worked out
/// while every bond is still unknown.
std::vector<BondType> geometry_types(const Molecule& molecule) {
    std::vector<BondType> types;
    SybylAtomTyper typer(SybylAtomTyper::HYDROGENS_MAY_BE_MISSING);
    for (int b = 0; b < molecule.nbonds(); ++b) {
        const std::string t = typer.calc_3d_ruled_bond_type(*molecule.bond(b));
        types.push_back(t == "1" ? SINGLE_BOND : t == "2" ? DOUBLE_BOND : UNKNOWN_BOND);
    }
    return types;
}

/// The site as deposited, with its uncertainties and displacement parameters.
Site deposited_site(const CifBlock& block, int index) {
    const CifAtomSite& a = block.atoms[index];
    THandle<Array<Uncertainty, 3> > uncertainty(new Array<Uncertainty, 3>());
    for (int k = 0; k < 3; ++k) (*uncertainty)[k] = a.fract[k].uncertainty();
    THandle<AtomicDisplacementParameters> adp;
    if (a.displacement == CifAtomSite::Uaniso) {
        Array<UncertainValue, 6> u;
        for (int k = 0; k < 6; ++k) u[k] = a.u_aniso[k];
        adp = THandle<AtomicDisplacementParameters>(new AtomicDisplacementParameters(u));
    } else if (a.displacement != CifAtomSite::NoDisplacement) {
        adp = THandle<AtomicDisplacementParameters>(new AtomicDisplacementParameters(a.u_iso, block.cell));
    }
    const Point f(a.fract[0].value(), a.fract[1].value(), a.fract[2].value());
    return Site(block.cell.orthogonal(f), f, a.occupancy, uncertainty, adp);
}

/// Molecule `c` of `parts`: its nodes (those kept, or all), each atom on a
/// site of its own, and the bonds between the nodes made. `site_of` makes
/// the site of a node; bond types are the parts' own, worked out here if
/// they are not yet.
template <class SiteOf>
HMolecule assemble(const CifBlock& block, Parts& parts, int c, const std::vector<bool>* keep, SiteOf site_of) {
    const std::vector<Parts::Node>& nodes = parts.nodes[c];
    HMolecule molecule(new Molecule3d());
    std::vector<int> index(nodes.size(), -1);
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        if (keep != nullptr && !(*keep)[k]) continue;
        const CifAtomSite& a = block.atoms[nodes[k].site];
        HAtom atom(new Atom3d(a.element, a.label, site_of(nodes[k])));
        atom->set_formal_charge(a.formal_charge);
        atom->set_symmtag(nodes[k].site);
        index[k] = molecule->add(atom);
    }
    const std::vector<std::pair<int, int> >& edges = parts.edges[c];
    const bool typed = !parts.types[c].empty() || edges.empty();
    std::vector<int> made;  // the edges made, in bond order
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (index[edges[e].first] >= 0 && index[edges[e].second] >= 0) {
            molecule->add(HBond(new Bond3d(typed ? parts.types[c][e] : UNKNOWN_BOND)), index[edges[e].first],
                          index[edges[e].second]);
            made.push_back(static_cast<int>(e));
        }
    if (!typed) {
        const std::vector<BondType> types = geometry_types(*molecule);
        for (std::size_t b = 0; b < made.size(); ++b) molecule->bond(static_cast<int>(b))->set_type(types[b]);
        // Types of the whole molecule hold for every image of it.
        if (keep == nullptr) parts.types[c] = types;
    }
    return molecule;
}

/// Molecules with complete sites: whole, or the first image of each site.
std::vector<HMolecule> complete_molecules(const CifBlock& block, Parts& parts, bool first_images_only) {
    std::vector<HMolecule> molecules;
    const std::vector<CrystalSymmetryOperator>& ops = block.cell.spacegroup().operators();
    std::vector<Site> deposited;
    for (std::size_t i = 0; i < block.atoms.size(); ++i) deposited.push_back(deposited_site(block, static_cast<int>(i)));
    for (std::size_t c = 0; c < parts.nodes.size(); ++c) {
        std::vector<bool> keep(parts.nodes[c].size(), true);
        if (first_images_only) {
            std::set<int> seen;
            for (std::size_t k = 0; k < keep.size(); ++k) keep[k] = seen.insert(parts.nodes[c][k].site).second;
        }
        molecules.push_back(assemble(block, parts, static_cast<int>(c), &keep, [&](const Parts::Node& node) {
            const Site& site = deposited[node.site];
            const bool moved = !ops[node.op].is_identity() || node.lattice[0] != 0 || node.lattice[1] != 0 ||
                               node.lattice[2] != 0;
            return HSite(moved ? new Site(site, CrystalSymmetryTransformation(ops[node.op], node.lattice), block.cell)
                               : new Site(site));
        }));
    }
    return molecules;
}

}  // namespace

const std::vector<HMolecule>& StructureReport::whole_molecules() const {
    if (whole_.size() != molecules_.size()) whole_ = complete_molecules(*block_, *parts_, false);
    return whole_;
}

const std::vector<HMolecule>& StructureReport::asymmetric_molecules() const {
    if (asymmetric_.size() != molecules_.size()) asymmetric_ = complete_molecules(*block_, *parts_, true);
    return asymmetric_;
}

class StructureReport::Builder {
public:
    Builder(StructureReport& report, const CifBlock& block)
        : report_(report), block_(block), cell_(block.cell), ops_(cell_.spacegroup().operators()), table_(ops_) {
        const std::size_t n = block.atoms.size();
        sites_.reserve(n);
        for (const CifAtomSite& a : block.atoms) {
            Point f(a.fract[0].value(), a.fract[1].value(), a.fract[2].value());
            sites_.push_back(f);
            orth_.push_back(cell_.orthogonal(f));
        }
        identity_op_ = -1;
        for (std::size_t i = 0; i < ops_.size(); ++i)
            if (ops_[i].is_identity()) identity_op_ = static_cast<int>(i);
        if (identity_op_ < 0) throw std::runtime_error("the symmetry operators do not include x,y,z");
    }

    void run() {
        hbond_criterion_.reset(new HBondCriterion(0.0, -5.0, Angle::from_degrees(120.0), true, false, ContactType(3), 3, 999));
        make_images();
        find_bonds();
        grow_molecules();
        find_hbonds();
    }

private:
    double reach() const {
        double largest = 0.0;
        std::set<Element::TARNCode> codes;
        for (const CifAtomSite& a : block_.atoms) codes.insert(a.element.code());
        for (Element::TARNCode a : codes)
            for (Element::TARNCode b : codes) largest = std::max(largest, BondDistanceLimit::limit(Element(a), Element(b)));
        return std::max(largest, hbond_criterion_->max_radius()) + 0.01;
    }

    /// Every image of every site that can come within reach of the asymmetric unit.
    void make_images() {
        reach_ = reach();
        Point lo(1e300, 1e300, 1e300), hi(-1e300, -1e300, -1e300);
        for (const Point& f : sites_)
            for (int k = 0; k < 3; ++k) {
                lo[k] = std::min(lo[k], f[k]);
                hi[k] = std::max(hi[k], f[k]);
            }
        const Vector<double, 3> stars[3] = {cell_.a_star_axis(), cell_.b_star_axis(), cell_.c_star_axis()};
        for (int k = 0; k < 3; ++k) {
            const double ext = reach_ * stars[k].length();
            lo[k] -= ext;
            hi[k] += ext;
        }
        // Count first: a hostile file with sites spread over many cells must not run away.
        std::size_t total = 0;
        for (const Point& f : sites_)
            for (const CrystalSymmetryOperator& op : ops_) {
                const Point q = op.apply(f);
                std::size_t count = 1;
                for (int k = 0; k < 3; ++k) {
                    const double span = std::floor(hi[k] - q[k]) - std::ceil(lo[k] - q[k]) + 1.0;
                    count = span <= 0.0 ? 0 : static_cast<std::size_t>(std::min(span, 1e6)) * count;
                    if (count > max_images) throw std::runtime_error("the asymmetric unit spreads over too many cells");
                }
                total += count;
                if (total > max_images) throw std::runtime_error("the asymmetric unit spreads over too many cells");
            }
        images_.reserve(total);
        report_.on_special_.assign(sites_.size(), false);
        for (std::size_t j = 0; j < sites_.size(); ++j)
            for (std::size_t s = 0; s < ops_.size(); ++s) {
                const Point q = ops_[s].apply(sites_[j]);
                // On a symmetry element an operator repeats an earlier image
                // (less a lattice translation): one atom, kept at the first.
                if (repeats_earlier_image(sites_[j], s)) {
                    report_.on_special_[j] = true;
                    continue;
                }
                int from[3], to[3];
                for (int k = 0; k < 3; ++k) {
                    from[k] = static_cast<int>(std::ceil(lo[k] - q[k]));
                    to[k] = static_cast<int>(std::floor(hi[k] - q[k]));
                }
                for (int x = from[0]; x <= to[0]; ++x)
                    for (int y = from[1]; y <= to[1]; ++y)
                        for (int z = from[2]; z <= to[2]; ++z) {
                            Image image;
                            image.site = static_cast<int>(j);
                            image.op = static_cast<int>(s);
                            image.lattice = Vector<int, 3>(x, y, z);
                            image.orth = cell_.orthogonal(Point(q[0] + x, q[1] + y, q[2] + z));
                            images_.push_back(image);
                        }
            }
        // A dense grid of cubes of the reach over the images' box, the images
        // of each cube in image order (one counting pass, one filling pass).
        for (int k = 0; k < 3; ++k) {
            grid_lo_[k] = 1e300;
            double hi_k = -1e300;
            for (const Image& image : images_) {
                grid_lo_[k] = std::min(grid_lo_[k], image.orth[k]);
                hi_k = std::max(hi_k, image.orth[k]);
            }
            if (images_.empty()) grid_lo_[k] = hi_k = 0.0;
            grid_n_[k] = static_cast<int>(std::floor((hi_k - grid_lo_[k]) / reach_)) + 1;
        }
        const long long ncells = static_cast<long long>(grid_n_[0]) * grid_n_[1] * grid_n_[2];
        if (ncells > 4 * static_cast<long long>(max_images)) throw std::runtime_error("the structure spreads too far");
        cell_start_.assign(static_cast<std::size_t>(ncells) + 1, 0);
        std::vector<int> cell_of(images_.size());
        for (std::size_t i = 0; i < images_.size(); ++i) {
            cell_of[i] = cell_index(images_[i].orth);
            ++cell_start_[static_cast<std::size_t>(cell_of[i]) + 1];
        }
        for (std::size_t c = 1; c < cell_start_.size(); ++c) cell_start_[c] += cell_start_[c - 1];
        cell_images_.resize(images_.size());
        std::vector<int> fill(cell_start_.begin(), cell_start_.end() - 1);
        for (std::size_t i = 0; i < images_.size(); ++i) cell_images_[fill[cell_of[i]]++] = static_cast<int>(i);
    }

    /// Whether operator `s` puts `f` where an earlier operator does, up to a
    /// lattice translation.
    bool repeats_earlier_image(const Point& f, std::size_t s) const {
        const Point q = ops_[s].apply(f);
        for (std::size_t e = 0; e < s; ++e) {
            const Point p = ops_[e].apply(f);
            Vector<double, 3> shift;
            for (int k = 0; k < 3; ++k) shift[k] = q[k] - p[k] - std::round(q[k] - p[k]);
            if (cell_.orthogonal(Point(shift)).length() < same_place) return true;
        }
        return false;
    }

    int cell_index(const Point& p) const {
        int c[3];
        for (int k = 0; k < 3; ++k)
            c[k] = std::max(0, std::min(grid_n_[k] - 1, static_cast<int>(std::floor((p[k] - grid_lo_[k]) / reach_))));
        return (c[0] * grid_n_[1] + c[1]) * grid_n_[2] + c[2];
    }

    /// The images within `radius` (at most the reach) of `p`, in image order.
    template <class Visit>
    void near(const Point& p, double radius, Visit visit) {
        std::vector<int> found;
        found.swap(found_);  // reused between calls; a visit may search again
        found.clear();
        int c[3];
        for (int k = 0; k < 3; ++k) c[k] = static_cast<int>(std::floor((p[k] - grid_lo_[k]) / reach_));
        for (int x = std::max(0, c[0] - 1); x <= std::min(grid_n_[0] - 1, c[0] + 1); ++x)
            for (int y = std::max(0, c[1] - 1); y <= std::min(grid_n_[1] - 1, c[1] + 1); ++y)
                for (int z = std::max(0, c[2] - 1); z <= std::min(grid_n_[2] - 1, c[2] + 1); ++z) {
                    const int cell = (x * grid_n_[1] + y) * grid_n_[2] + z;
                    for (int h = cell_start_[cell]; h < cell_start_[cell + 1]; ++h)
                        if (distance(p, images_[cell_images_[h]].orth) <= radius) found.push_back(cell_images_[h]);
                }
        std::sort(found.begin(), found.end());
        for (int i : found) visit(images_[i]);
        found.swap(found_);
    }

    static double distance(const Point& a, const Point& b) {
        const double dx = a[0] - b[0], dy = a[1] - b[1], dz = a[2] - b[2];
        return std::sqrt(dx * dx + dy * dy + dz * dz);
    }

    bool is_identity(int op, const Vector<int, 3>& lattice) const {
        return op == identity_op_ && lattice[0] == 0 && lattice[1] == 0 && lattice[2] == 0;
    }

    /// Each site as a DisorderAtom of its assembly and group, once as
    /// deposited and once as a movable stand-in for its images, so that the
    /// bond test is the kernel's rule on alternatives.
    void make_disorder_atoms() {
        std::map<std::string, int> assemblies;
        for (std::size_t i = 0; i < block_.atoms.size(); ++i) {
            const CifAtomSite& a = block_.atoms[i];
            const int assembly = assemblies.emplace(a.disorder_assembly, static_cast<int>(assemblies.size())).first->second;
            for (int copy = 0; copy < 2; ++copy) {
                HAtom atom(new Atom3d(a.element, a.label, HSite(new Site(orth_[i], sites_[i], a.occupancy.value()))));
                (copy == 0 ? site_atoms_ : image_atoms_).push_back(HDisorderAtom(new DisorderAtom(atom, assembly, a.disorder_group)));
            }
        }
    }

    /// Whether site i and site j at `orth` are bonded by distance and disorder.
    bool is_a_bond(int i, int j, const Point& orth) {
        image_atoms_[j]->site()->set_coordinates(orth);
        return bond_rule_.is_a_bond(site_atoms_[i], image_atoms_[j]);
    }

    /// Whether sites i and j (at an image) may be bonded by their disorder.
    bool disorder_allows(int i, int j, int op, const Vector<int, 3>& lattice) const {
        const CifAtomSite& a = block_.atoms[i];
        const CifAtomSite& b = block_.atoms[j];
        // A negative group is disordered about a symmetry element: its images
        // by other operators are the alternatives.
        if (a.disorder_group < 0 && a.disorder_group == b.disorder_group && !is_identity(op, lattice)) return false;
        return true;
    }

    void find_bonds() {
        make_disorder_atoms();
        const std::size_t n = sites_.size();
        links_.assign(n, std::vector<Link>());
        for (std::size_t i = 0; i < n; ++i) {
            const Element& ei = block_.atoms[i].element;
            near(orth_[i], reach_, [&](const Image& image) {
                const int j = image.site;
                if (static_cast<std::size_t>(j) == i && is_identity(image.op, image.lattice)) return;
                const double d = distance(orth_[i], image.orth);
                if (static_cast<std::size_t>(j) == i && d < same_place) {
                    report_.on_special_[i] = true;
                    return;
                }
                // The table limit first: most images in reach are far beyond it.
                if (d > BondDistanceLimit::limit(ei, block_.atoms[j].element)) return;
                if (!is_a_bond(static_cast<int>(i), j, image.orth)) return;
                if (!disorder_allows(static_cast<int>(i), j, image.op, image.lattice)) return;
                links_[i].push_back(Link{j, image.op, image.lattice, d});
            });
        }
        for (std::size_t i = 0; i < n; ++i)
            for (const Link& link : links_[i]) {
                // A bond inside the asymmetric unit once; one to an image from each end.
                if (is_identity(link.op, link.lattice) && link.to < static_cast<int>(i)) continue;
                report_.bonds_.push_back(BondRow{static_cast<int>(i), link.to, link.op, link.lattice,
                                                 symmetry_code(link.op, link.lattice), link.distance});
            }
    }

    struct Node {
        int site;
        Affine t;
        Point frac;
    };

    void grow_molecules() {
        report_.parts_.reset(new Parts());
        Parts& parts = *report_.parts_;
        const std::size_t n = sites_.size();
        std::vector<int> component(n, -1);
        int ncomponents = 0;
        for (std::size_t start = 0; start < n; ++start) {
            if (component[start] >= 0) continue;
            const int c = ncomponents++;
            // The molecule grown whole from its first site as deposited.
            std::vector<Node> nodes;
            std::set<std::pair<int, int> > edges;
            std::multimap<int, int> nodes_of_site;
            bool polymeric = false;
            nodes.push_back(Node{static_cast<int>(start), Affine::identity(), sites_[start]});
            nodes_of_site.emplace(static_cast<int>(start), 0);
            component[start] = c;
            const std::size_t cap = ops_.size() * n + 1;
            for (std::size_t head = 0; head < nodes.size(); ++head) {
                const Node u = nodes[head];
                for (const Link& link : links_[u.site]) {
                    const Affine t = u.t.after(Affine::of(ops_[link.op], link.lattice));
                    const Point f = t.apply(sites_[link.to]);
                    int v = -1;
                    bool translated = false;
                    auto range = nodes_of_site.equal_range(link.to);
                    for (auto it = range.first; it != range.second && v < 0; ++it) {
                        const Point& g = nodes[it->second].frac;
                        double shift[3];
                        bool whole = true;
                        for (int k = 0; k < 3; ++k) {
                            shift[k] = f[k] - g[k];
                            whole = whole && std::fabs(shift[k] - std::round(shift[k])) * cell_axis(k) < same_place;
                        }
                        if (!whole) continue;
                        if (std::round(shift[0]) == 0 && std::round(shift[1]) == 0 && std::round(shift[2]) == 0)
                            v = it->second;
                        else
                            translated = true;
                    }
                    if (translated && v < 0) {
                        polymeric = true;  // the same atom one lattice repeat on: a chain, layer or network
                        continue;
                    }
                    if (v < 0) {
                        if (nodes.size() >= cap) continue;
                        v = static_cast<int>(nodes.size());
                        nodes.push_back(Node{link.to, t, f});
                        nodes_of_site.emplace(link.to, v);
                        component[link.to] = c;
                    }
                    const int a = static_cast<int>(head);
                    if (a != v) edges.insert(std::make_pair(std::min(a, v), std::max(a, v)));
                }
            }
            MoleculeRow row;
            for (const auto& entry : nodes_of_site) row.sites.push_back(entry.first);
            row.sites.erase(std::unique(row.sites.begin(), row.sites.end()), row.sites.end());
            row.polymeric = polymeric;
            row.whole_atoms = polymeric ? 0 : static_cast<int>(nodes.size());
            row.special_position = nodes.size() > row.sites.size() && !polymeric;
            row.formula = formula(nodes, row.sites, polymeric);
            report_.molecules_.push_back(row);
            node_lists_.push_back(nodes);
            parts.nodes.push_back(std::vector<Parts::Node>());
            for (const Node& node : nodes) {
                Parts::Node record{node.site, identity_op_, Vector<int, 3>(0, 0, 0), node.frac};
                table_.find(node.t, record.op, record.lattice);
                parts.nodes.back().push_back(record);
            }
            parts.edges.push_back(std::vector<std::pair<int, int> >(edges.begin(), edges.end()));
            parts.types.push_back(std::vector<BondType>());
        }
        component_ = component;
    }

    double cell_axis(int k) const { return k == 0 ? cell_.a() : k == 1 ? cell_.b() : cell_.c(); }

    /// Hill order: C, H, then the rest alphabetically (all alphabetically
    /// without carbon). Of each disorder assembly only the first group that
    /// the molecule holds counts.
    std::string formula(const std::vector<Node>& nodes, const std::vector<int>& sites, bool polymeric) const {
        std::map<std::string, int> first_group;
        for (int site : sites) {
            const CifAtomSite& a = block_.atoms[site];
            if (a.disorder_group > 0) {
                auto found = first_group.find(a.disorder_assembly);
                if (found == first_group.end() || a.disorder_group < found->second) first_group[a.disorder_assembly] = a.disorder_group;
            }
        }
        std::map<std::string, int> counts;
        auto count = [&](int site) {
            const CifAtomSite& a = block_.atoms[site];
            if (a.disorder_group > 0 && a.disorder_group != first_group[a.disorder_assembly]) return;
            ++counts[a.element.symbol()];
        };
        if (polymeric)
            for (int s : sites) count(s);
        else
            for (const Node& node : nodes) count(node.site);
        std::vector<std::string> order;
        const bool carbon = counts.count("C") != 0;
        if (carbon) {
            order.push_back("C");
            if (counts.count("H")) order.push_back("H");
        }
        for (const auto& entry : counts)
            if (!carbon || (entry.first != "C" && entry.first != "H")) order.push_back(entry.first);
        std::string text;
        for (const std::string& symbol : order) {
            if (!text.empty()) text += " ";
            text += symbol;
            if (counts[symbol] != 1) text += std::to_string(counts[symbol]);
        }
        return text;
    }

    /// Molecule `c` moved by `t`, with plain sites (what the hydrogen-bond
    /// test reads), made once for each place.
    HMolecule placed(int c, const Affine& t) {
        int op = 0;
        Vector<int, 3> lattice;
        if (!table_.find(t, op, lattice)) return HMolecule();
        const std::string key = std::to_string(c) + ":" + symmetry_code(op, lattice);
        auto found = placed_.find(key);
        if (found != placed_.end()) return found->second;
        HMolecule molecule = assemble(block_, *report_.parts_, c, nullptr, [&](const Parts::Node& node) {
            const Point f = t.apply(node.frac);
            return HSite(new Site(cell_.orthogonal(f), f, block_.atoms[node.site].occupancy.value()));
        });
        placed_.emplace(key, molecule);
        return molecule;
    }

    /// The node of `site` in molecule c that came first.
    int first_node(int c, int site) const {
        const std::vector<Node>& nodes = node_lists_[c];
        for (std::size_t k = 0; k < nodes.size(); ++k)
            if (nodes[k].site == site) return static_cast<int>(k);
        return -1;
    }

    void find_hbonds() {
        const HBondCriterion& criterion = *hbond_criterion_;
        const double radius = criterion.max_radius();
        for (std::size_t h = 0; h < sites_.size(); ++h) {
            if (block_.atoms[h].element.atomic_number() != 1) continue;
            // A hydrogen on one atom other than carbon may give a hydrogen
            // bond; its molecule is made only once an acceptor is in reach.
            if (links_[h].size() != 1) continue;
            const Link& to_donor = links_[h][0];
            if (block_.atoms[to_donor.to].element.atomic_number() == 6) continue;
            const Point d_orth = cell_.orthogonal(Point(ops_[to_donor.op].apply(sites_[to_donor.to]) + Vector<double, 3>(to_donor.lattice)));
            const int c = component_[h];
            const int hn = first_node(c, static_cast<int>(h));
            HMolecule donor_molecule;
            int dn = -1;
            const Element& eh = block_.atoms[h].element;
            near(orth_[h], radius, [&](const Image& image) {
                const CifAtomSite& acceptor = block_.atoms[image.site];
                const int z = acceptor.element.atomic_number();
                if (z != 7 && z != 8 && z != 9 && z != 16 && z != 17 && z != 35 && z != 53) return;
                const double h_a = distance(orth_[h], image.orth);
                const double v = h_a - eh.vdw_radius() - acceptor.element.vdw_radius();
                if (v > 0.0 || v < -5.0) return;
                const Vector<double, 3> hd = d_orth - orth_[h], ha = image.orth - orth_[h];
                const double cosine = hd.dot(ha) / (hd.length() * ha.length());
                if (std::acos(std::max(-1.0, std::min(1.0, cosine))) * 180.0 / pi < 120.0 - 1e-9) return;
                if (donor_molecule.unhand() == nullptr) {
                    // The donor's molecule placed so that this hydrogen stands as deposited.
                    donor_molecule = placed(c, node_lists_[c][hn].t.inverse());
                    if (donor_molecule.unhand() == nullptr) return;
                    dn = (*donor_molecule->atom_connections(hn))[0];
                }
                // The acceptor's molecule placed so that the acceptor is this image.
                const int k = component_[image.site];
                const int an = first_node(k, image.site);
                const Affine to_image = Affine::of(ops_[image.op], image.lattice).after(node_lists_[k][an].t.inverse());
                HMolecule acceptor_molecule = placed(k, to_image);
                if (acceptor_molecule.unhand() == nullptr) return;
                Hvector_HMolecularContact found = criterion.find_contact(donor_molecule, hn, acceptor_molecule, an);
                if (found->empty()) return;
                HBondRow row;
                row.donor = donor_molecule->atom(dn)->symmtag();
                row.hydrogen = static_cast<int>(h);
                row.acceptor = image.site;
                row.op = image.op;
                row.lattice = image.lattice;
                row.symmetry = symmetry_code(image.op, image.lattice);
                row.d_a = distance(d_orth, image.orth);
                row.h_a = h_a;
                row.angle = std::acos(std::max(-1.0, std::min(1.0, cosine))) * 180.0 / pi;
                report_.hbonds_.push_back(row);
            });
        }
    }

    StructureReport& report_;
    const CifBlock& block_;
    const Cell& cell_;
    const std::vector<CrystalSymmetryOperator>& ops_;
    OperatorTable table_;
    int identity_op_ = 0;
    std::vector<Point> sites_, orth_;
    double reach_ = 0.0;
    std::vector<Image> images_;
    double grid_lo_[3] = {0, 0, 0};
    int grid_n_[3] = {1, 1, 1};
    std::vector<int> cell_start_, cell_images_, found_;
    std::vector<std::vector<Link> > links_;
    std::vector<int> component_;
    std::vector<std::vector<Node> > node_lists_;
    std::map<std::string, HMolecule> placed_;
    std::unique_ptr<HBondCriterion> hbond_criterion_;
    BondDistanceLimit bond_rule_{min_bond, false};
    std::vector<HDisorderAtom> site_atoms_, image_atoms_;
};

StructureReport::StructureReport(const CifBlock& block) : block_(&block) {
    Builder builder(*this, block);
    builder.run();
}

}  // namespace molcryst
