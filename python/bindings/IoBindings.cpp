// Reading files and reporting them: read_cif, report, and what batch runs share
// with the molcryst command (the files of a collection, the output lines).
#include <nlohmann/json.hpp>
#include <sstream>

#include "BatchInput.h"
#include "BatchOutput.h"
#include "Bindings.h"
#include "FileReport.h"
#include "molcryst/io/CifImport.h"

namespace py = pybind11;

namespace molcryst {
namespace python {

namespace {

py::list read_cif(const std::string& path) {
    std::vector<std::string> skipped;
    std::vector<ImportedStructure> structures;
    {
        py::gil_scoped_release unlocked;
        structures = CifImport::read_file(path, &skipped);
    }
    py::list makers;
    for (const ImportedStructure& s : structures) {
        py::object maker = py::cast(s.crystal_maker);
        maker.attr("name") = s.name;
        maker.attr("warnings") = s.warnings;
        makers.append(maker);
    }
    return makers;
}

/// The JSON document as a Python object, through the json module: the very
/// values the command prints, floats included.
py::object parsed(const std::string& text) { return py::module_::import("json").attr("loads")(text); }

py::object report(const std::string& path, bool add_hydrogens, bool normalise_hydrogens, bool surroundings,
                  long long disorder_state, bool expand, bool clashes) {
    app::ReportOptions options;
    options.json = true;
    options.add_hydrogens = add_hydrogens;
    options.normalise_hydrogens = normalise_hydrogens;
    options.surroundings = surroundings;
    options.disorder_state = disorder_state;
    options.expand = expand;
    options.clashes = clashes;
    if (disorder_state < -1) throw std::invalid_argument("report: the disorder state is a number from 0");
    std::ostringstream out, err;
    nlohmann::json entry;
    std::string text;
    {
        py::gil_scoped_release unlocked;
        app::report_file(path, options, out, err, entry);
        if (!entry.is_null()) text = app::report_document(nlohmann::json::array({entry})).dump();
    }
    if (entry.is_null()) {
        // The file could not be read: the command's line about it is the message.
        const std::string message = app::report_error(path, err.str());
        PyErr_SetString(py::module_::import("molcryst._molcryst").attr("CifError").ptr(), message.c_str());
        throw py::error_already_set();
    }
    return parsed(text);
}

}  // namespace

void bind_io(py::module_& m) {
    m.def("read_cif", &read_cif, py::arg("path"),
          "The structures of a CIF file, one CrystalMaker per data block with atom sites, each with the block's "
          "`name` and the `warnings` of its import. CifError ('FILE:LINE: what') for a file that cannot be read.");
    m.def("report", &report, py::arg("path"), py::kw_only(), py::arg("add_hydrogens") = false,
          py::arg("normalise_hydrogens") = false, py::arg("surroundings") = false, py::arg("disorder_state") = -1,
          py::arg("expand") = false, py::arg("clashes") = false,
          "The dictionary `molcryst report --json PATH` prints, with the same options; CifError with the "
          "command's message for a file that cannot be read.");
    m.def(
        "report_line",
        [](const std::string& path) {
            bool failed = false;
            std::string line;
            {
                py::gil_scoped_release unlocked;
                line = app::report_line(path, failed);
            }
            return py::make_tuple(line, failed);
        },
        py::arg("path"),
        "(line, failed): the line `molcryst batch` writes for the file, without its newline, and whether it "
        "is an error line.");
    m.def("batch_input", &app::batch_input, py::arg("folder_or_list"),
          "The files a batch run reports, in order: the CIF files of a folder tree, sorted, or the paths a list "
          "file names. molcryst.Error when there is none.");
    m.attr("__version__") = app::molcryst_version();

    py::class_<app::BatchOutput>(m, "BatchOutput",
                                 "A batch output (JSON lines) open for appending, with the files it already holds; "
                                 "a last line left unfinished by a stopped run is cut off when opened.")
        .def(py::init<const std::string&>(), py::arg("path"))
        .def("path", &app::BatchOutput::path)
        .def("done", &app::BatchOutput::done, "The files already in the output.")
        .def("is_done", &app::BatchOutput::is_done, py::arg("file"))
        .def("append", &app::BatchOutput::append, py::arg("line"), "Writes the line and a newline at once.");
}

}  // namespace python
}  // namespace molcryst
