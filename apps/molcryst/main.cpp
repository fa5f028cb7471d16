// molcryst: the command. Each subcommand sits in a file of its own and adds
// itself to the parser here.
#include <CLI/CLI.hpp>

#include <iostream>

#include "Commands.h"

int main(int argc, char** argv) {
    CLI::App app{"molcryst: reads crystal structures and reports what they hold"};
    app.set_version_flag("--version", std::string("molcryst ") + MOLCRYST_VERSION);
    app.require_subcommand(1);
    molcryst::app::ReportCommand report(app);
    molcryst::app::PackCommand pack(app);
    molcryst::app::ConvertCommand convert(app);
    molcryst::app::SaveCommand save(app);
    molcryst::app::DbCommand db(app);
    molcryst::app::DrawCommand draw(app);
    molcryst::app::BatchCommand batch(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // --help and --version end here with code 0; anything else is bad usage.
        const int code = app.exit(e);
        return code == 0 ? 0 : 2;
    }
    if (report.chosen()) return report.run(std::cout, std::cerr);
    if (pack.chosen()) return pack.run(std::cout, std::cerr);
    if (convert.chosen()) return convert.run(std::cout, std::cerr);
    if (save.chosen()) return save.run(std::cout, std::cerr);
    if (db.chosen()) return db.run(std::cout, std::cerr);
    if (draw.chosen()) return draw.run(std::cout, std::cerr);
    if (batch.chosen()) return batch.run(std::cout, std::cerr);
    return 2;
}
