// The surroundings of the molecules of the 25 real structures: what one
// molecule sees of another it must be seen by in return, every hydrogen bond
// of the report between two molecules turns up among the neighbours, and a
// polymer has none.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "io/CifFiles.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/MolecularSurroundings.h"
#include "molcryst/io/StructureReport.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using molcryst::testing::cif_files;

namespace {

const std::string& directory = molcryst::testing::cif_directory;


// How many operators of the cell carry the molecule onto itself (with some
// lattice translation): 1 in a general position, more on a symmetry element.
int site_symmetry(const Cell& cell, const Molecule& m) {
    int count = 0;
    for (const CrystalSymmetryOperator& op : cell.spacegroup().operators()) {
        bool all = m.natoms() > 0;
        Vector<double, 3> shift;
        for (int a = 0; a < m.natoms() && all; ++a) {
            const Point image = op * m.atom(a)->site()->frac();
            bool found = false;
            for (int b = 0; b < m.natoms() && !found; ++b) {
                const Vector<double, 3> d = m.atom(b)->site()->frac() - image;
                if (a == 0 && m.atom(b)->symmtag() == m.atom(a)->symmtag()) {
                    const Vector<double, 3> t(std::round(d[0]), std::round(d[1]), std::round(d[2]));
                    if (equals(d, t, 1e-4)) {
                        shift = t;
                        found = true;
                    }
                } else if (a > 0) {
                    found = equals(d, shift, 1e-4);
                }
            }
            all = found;
        }
        count += all ? 1 : 0;
    }
    return count;
}

}  // namespace

TEST(MolecularSurroundings, NeighboursSeeEachOtherAndHoldTheReportsHydrogenBonds) {
    int files = 0, neighbours = 0;
    for (const std::string& file : cif_files()) {
        const CifBlock block = CifReader::read_file(directory + "/" + file).blocks.at(0);
        const StructureReport report(block);
        const std::vector<std::vector<MolecularSurroundings::Neighbour> > around = MolecularSurroundings::of(report);
        ASSERT_EQ(around.size(), report.molecules().size()) << file;
        ++files;
        // Contacts and hydrogen bonds from i to j, summed over the images.
        std::map<std::pair<int, int>, std::pair<int, int> > between;
        for (std::size_t i = 0; i < around.size(); ++i) {
            if (report.molecules()[i].polymeric) {
                EXPECT_TRUE(around[i].empty()) << file;
                continue;
            }
            for (const MolecularSurroundings::Neighbour& n : around[i]) {
                ++neighbours;
                EXPECT_GT(n.contacts + n.hbonds, 0) << file;
                EXPECT_GT(n.distance, 0.5) << file;
                EXPECT_EQ(n.symmetry, symmetry_code(n.op, Vector<int, 3>(n.lattice[0], n.lattice[1], n.lattice[2])));
                std::pair<int, int>& sum = between[std::make_pair(static_cast<int>(i), n.molecule)];
                sum.first += n.contacts;
                sum.second += n.hbonds;
            }
        }
        // A molecule on a symmetry element meets each neighbour as often as
        // the element repeats it; the neighbour meets it once for each of its own.
        std::vector<int> order;
        for (const HMolecule& m : report.whole_molecules()) order.push_back(site_symmetry(block.cell, *m));
        for (const auto& entry : between) {
            const int i = entry.first.first, j = entry.first.second;
            if (report.molecules()[static_cast<std::size_t>(j)].polymeric) continue;
            const auto back = between.find(std::make_pair(j, i));
            ASSERT_NE(back, between.end()) << file << " " << i << " " << j;
            const int gi = order[static_cast<std::size_t>(i)], gj = order[static_cast<std::size_t>(j)];
            EXPECT_EQ(back->second.first * gi, entry.second.first * gj) << file << " contacts " << i << "-" << j;
            EXPECT_EQ(back->second.second * gi, entry.second.second * gj) << file << " hydrogen bonds " << i << "-" << j;
        }
        // Each hydrogen bond of the report between two molecules that are not
        // polymers joins its donor's molecule to a neighbour at its code.
        std::map<int, int> molecule_of;
        for (std::size_t c = 0; c < report.molecules().size(); ++c)
            for (int s : report.molecules()[c].sites) molecule_of[s] = static_cast<int>(c);
        for (const StructureReport::HBondRow& h : report.hbonds()) {
            const int from = molecule_of[h.hydrogen], to = molecule_of[h.acceptor];
            if (report.molecules()[static_cast<std::size_t>(from)].polymeric ||
                report.molecules()[static_cast<std::size_t>(to)].polymeric || (from == to && h.symmetry == "1_555"))
                continue;
            bool found = false;
            for (const MolecularSurroundings::Neighbour& n : around[static_cast<std::size_t>(from)])
                found = found || (n.molecule == to && n.hbonds > 0);
            EXPECT_TRUE(found) << file << " " << block.atoms[static_cast<std::size_t>(h.hydrogen)].label << "..."
                               << block.atoms[static_cast<std::size_t>(h.acceptor)].label << " " << h.symmetry;
        }
    }
    EXPECT_EQ(files, 25);
    EXPECT_GT(neighbours, 200);
}
