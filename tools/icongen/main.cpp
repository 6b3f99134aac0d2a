#include "ContactSheet.h"
#include "IconCatalog.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>
#include <exception>

// Draws the workbench's icons into its resource folder:
//   korv-icongen <workbench/resources> [--sheet sheet.png]
int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Draws the file workbench's icons."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("resources"), QStringLiteral("The workbench's resources folder."));
    const QCommandLineOption sheetOption(QStringLiteral("sheet"),
                                         QStringLiteral("Also write a contact sheet of the icons read back."),
                                         QStringLiteral("file"));
    parser.addOption(sheetOption);
    parser.process(app);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    QTextStream err(stderr);
    try {
        const QStringList written = IconCatalog().writeAll(parser.positionalArguments().first());
        err << written.size() << " images written\n";
        if (parser.isSet(sheetOption) && !ContactSheet::compose(written).save(parser.value(sheetOption))) {
            err << "cannot write " << parser.value(sheetOption) << '\n';
            return 1;
        }
    } catch (const std::exception& e) {
        err << e.what() << '\n';
        return 1;
    }
    return 0;
}
