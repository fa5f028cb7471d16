// An outside program that takes molcryst as a user would: one include, the
// namespace, and the library's names. It exits non-zero if anything is off.
#include <molcryst/io/CifReader.h>
#include <molcryst/molcryst.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace molcryst;

namespace {
struct Centre {
    std::string label_;
    std::string label() const { return label_; }
};
int failures = 0;
void check(bool ok, const char* what) {
    if (!ok) {
        std::fprintf(stderr, "consumer: %s\n", what);
        ++failures;
    }
}
}  // namespace

int main() {
    THandle<Centre> a(new Centre{"C1"}), b(new Centre{"N1"}), c(new Centre{"O1"});
    check(a.use_count() == 1, "handle count");

    Archive ar = Archive::temporary();
    ar << std::string("entry") << std::vector<int>{1, 2, 3};
    ar.rewind();
    std::string text;
    std::vector<int> numbers;
    ar >> text >> numbers;
    check(text == "entry" && numbers.size() == 3, "archive round trip");

    IndexedTable<THandle<Centre> > table;
    table.add(a);
    table.add(b);
    table.remove_value(a);
    check(table.index(b) == 0, "indexed table repair");
    check(AtomLabelPredicate<THandle<Centre> >("N1")(b), "atom predicate");

    Graph<THandle<Centre>, int> graph;
    graph.add_edge(1, a, b);
    graph.add_edge(2, b, c);
    std::vector<THandle<Centre> > path;
    check(graph.shortest_path(a, c, path) && path.size() == 3, "graph shortest path");
    try {
        graph.add_edge(1, a, c);
        check(false, "duplicate edge accepted");
    } catch (const std::invalid_argument& e) {
        check(std::string(e.what()) == "Graph::add_edge - duplicate edge identifier", "graph message");
    }

    // The reader target: a structure from text.
    const std::string cif =
        "data_x\n_cell_length_a 5\n_cell_length_b 6\n_cell_length_c 7\n_cell_angle_alpha 90\n"
        "_cell_angle_beta 90\n_cell_angle_gamma 90\n_symmetry_space_group_name_H-M 'P -1'\n"
        "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\nO1 0.1 0.2 0.3\n";
    CifDocument document = CifReader::read_text(cif, "consumer.cif");
    check(document.blocks.size() == 1 && document.blocks[0].cell.spacegroup().noperators() == 2, "CIF import");
    return failures == 0 ? 0 : 1;
}
