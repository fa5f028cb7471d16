// Hydrogen normalisation on the real structures: through the kernel edit on
// each structure's CrystalMaker, and through the report's normalised block,
// every terminal O-H, N-H and C-H comes out at the standard distance and no
// other atom moves.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "CifFiles.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/edit/HydrogenNormalisation.h"
#include "molcryst/io/CifImport.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/NormalisedHydrogens.h"
#include "molcryst/io/StructureReport.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

const std::map<std::string, double> standard{{"C", 1.083}, {"N", 1.009}, {"O", 0.983}};

}  // namespace

TEST(HydrogenNormalisation, RealStructuresGetStandardDistancesAndParentsStay) {
    int moved = 0;
    for (const std::string& file : cif_files()) {
        for (const CifBlock& block : CifReader::read_file(cif_directory + "/" + file).blocks) {
            const StructureReport report(block);
            const HCrystalMaker maker = CifImport::crystal_maker(report);
            // Every atom's place before, by atom.
            std::map<HAtom, Point> before;
            const Hvector_HMolecule molecules = maker->current_molecules();
            for (const HMolecule& m : *molecules)
                for (int i = 0; i < m->natoms(); ++i)
                    if (m->atom(i)->has_site()) before[m->atom(i)] = m->atom(i)->site()->orth();
            HydrogenNormalisation().apply(*maker);
            for (const HMolecule& m : *molecules) {
                for (int b = 0; b < m->nbonds(); ++b) {
                    const HBond bond = m->bond(b);
                    HAtom h = bond->atom1(), x = bond->atom2();
                    if (h->element().symbol() != "H") std::swap(h, x);
                    if (h->element().symbol() != "H" || h->nbonds() != 1 || !x->has_site()) continue;
                    const auto found = standard.find(x->element().symbol());
                    if (found == standard.end()) continue;
                    EXPECT_NEAR((h->site()->orth() - x->site()->orth()).length(), found->second, 1e-9)
                        << file << " " << h->label();
                    // Along the old direction.
                    const Vector<double, 3> old = before[h] - before[x], now = h->site()->orth() - x->site()->orth();
                    EXPECT_NEAR(cross(old, now).length(), 0.0, 1e-9) << file << " " << h->label();
                    ++moved;
                }
                for (int i = 0; i < m->natoms(); ++i) {
                    const HAtom a = m->atom(i);
                    if (!a->has_site() || (a->element().symbol() == "H" && a->nbonds() == 1)) continue;
                    EXPECT_EQ(a->site()->orth(), before[a]) << file << " " << a->label();
                }
            }
        }
    }
    EXPECT_GT(moved, 300);
}

TEST(NormalisedHydrogens, ReportBlocksHaveStandardDistancesAndOtherSitesStay) {
    int moved = 0;
    for (const std::string& file : cif_files()) {
        const CifBlock block = CifReader::read_file(cif_directory + "/" + file).blocks.at(0);
        const StructureReport report(block);
        std::vector<NormalisedHydrogens::Moved> list;
        const CifBlock normalised = NormalisedHydrogens::normalise(report, list);
        ASSERT_EQ(normalised.atoms.size(), block.atoms.size());
        std::vector<bool> is_moved(block.atoms.size(), false);
        for (const NormalisedHydrogens::Moved& m : list) {
            is_moved[static_cast<std::size_t>(m.site)] = true;
            const std::string parent = block.atoms[static_cast<std::size_t>(m.parent)].element.symbol();
            ASSERT_TRUE(standard.count(parent)) << file;
            EXPECT_NEAR(m.after, standard.at(parent), 1e-9) << file;
        }
        for (std::size_t i = 0; i < block.atoms.size(); ++i) {
            if (is_moved[i]) continue;
            for (std::size_t k = 0; k < 3; ++k) {
                EXPECT_EQ(normalised.atoms[i].fract[k].value(), block.atoms[i].fract[k].value());
            }
        }
        // The report on the normalised block finds each moved hydrogen's bond at the new length.
        const StructureReport again(normalised);
        for (const NormalisedHydrogens::Moved& m : list) {
            int bonds = 0;
            for (const StructureReport::BondRow& r : again.bonds())
                if (r.atom1 == m.site || (r.atom2 == m.site && r.symmetry == "1_555")) {
                    ++bonds;
                    EXPECT_NEAR(r.distance, m.after, 1e-6) << file;
                }
            EXPECT_EQ(bonds, 1) << file << " " << block.atoms[static_cast<std::size_t>(m.site)].label;
        }
        moved += static_cast<int>(list.size());
    }
    EXPECT_GT(moved, 300);
}
