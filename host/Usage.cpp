#include "Usage.h"

#include "CommandLine.h"

#include <Kelvane.h>
#include <QLocale>

namespace kvn::host {

QString programUsage() {
  QString const subcommands = listed({
      {"show FILE", System::tr("what a file holds")},
      {"check FILE...", System::tr("what is wrong with a file, or should not be trusted")},
      {"adjust FILE", System::tr("adjusted coordinates with their errors")},
      {"report FILE OUT.html", System::tr("the same as a page with map and tables, to print and to hand over")},
      {"plan FILE --points FILE.dat", System::tr("how good the network will be, before it is measured")},
      {"heights FILE", System::tr("trigonometric heights with their errors")},
      {"convert IN OUT", System::tr("the same job in another format")},
      {"map FILE OUT.png|OUT.svg", System::tr("a picture of the map, with error ellipses")},
      {"exec [--open FILE] [--save FILE]", System::tr("run the JSON commands of standard input")},
      {"help [SUBCOMMAND]", System::tr("all options of a subcommand")},
  });
  QString const options = listed({
      {"--json", System::tr("print JSON instead of tables")},
      {"--encoding NAME", System::tr("encoding of files that are not UTF-8, such as GBK")},
      {"--language en|zh", System::tr("language of the texts")},
      {"--quiet", System::tr("print only errors")},
      {"--help, --version", {}},
  });
  QString const files = wrapped(
      System::tr(
          "FILE is a traverse file (.txt), an instrument job (.lqf), a COSA network (.in2), a coordinate file (.dat) "
          "or a project (.kvn); - is standard input, with --kind. Exit code: 0 done, 1 data refused, 2 wrong usage."),
      0, kColumns);
  return System::tr("Usage: kelvane %1").arg("SUBCOMMAND ...") + "\n\n" +
         System::tr("Field data of total stations to adjusted coordinates.") + "\n\n" + System::tr("Subcommands:") +
         '\n' + subcommands + '\n' + System::tr("Options of all subcommands:") + '\n' + options + '\n' + files + '\n';
}

void useLanguageOf(QStringList const& arguments) {
  QString name;
  for (int i = 1; i < arguments.size(); ++i) {
    QString const& argument = arguments[i];
    if (argument == "--language" && i + 1 < arguments.size()) name = arguments[i + 1];
    if (argument.startsWith("--language=")) name = argument.section('=', 1);
  }
  if (name == "zh") QLocale::setDefault(QLocale("zh_CN"));
  if (name == "en") QLocale::setDefault(QLocale("en_US"));
  System system;
  system.setConfigFile(QString());
  system.init();
}

QStringList withoutLanguage(QStringList arguments) {
  for (int i = arguments.size() - 1; i > 0; --i) {
    bool const isWithValue = arguments[i].startsWith("--language=");
    if (arguments[i] == "--language" && i + 1 < arguments.size()) arguments.removeAt(i + 1);
    if (isWithValue || arguments[i] == "--language") arguments.removeAt(i);
  }
  return arguments;
}

}  // namespace kvn::host
