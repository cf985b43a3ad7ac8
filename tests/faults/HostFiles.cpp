// What a host reads and writes by the library and `kelvane` does not: legend codes, and settings at their change.
//
//   kelvane_host_files codes IN OUT
//   kelvane_host_files settings FILE
#include <core/System.h>
#include <legend/XmlMannager.h>
#include <QCoreApplication>
#include <cstdio>
#include <exception>

namespace {

int fail(char const* text) {
  std::fprintf(stderr, "%s\n", text);
  return 1;
}

int copyCodes(QString const& in, QString const& out) {
  kvn::XmlMannager codes;
  if (!codes.readPrjCode(in)) return fail("the codes were not read");
  return codes.saveAsPrjCode(out) ? 0 : fail("the codes were not written");
}

/// Goes on after a failure to read, as hosts do.
void changeSettings(kvn::System& system, QString const& file) {
  system.setConfigFile(file);
  system.readConfig();
  system.getConfig()->root()["new"] = "setting";
  system.writeConfig();
  system.setConfigFile({});  // nothing more is to be written
}

/// Every message tells a failure here.
int run(QStringList const& arguments) {
  int code = 0;
  kvn::System system;
  system.setConfigFile({});
  system.setSendMessageFunc([&code](QString const& text, kvn::MessType) { code = fail(text.toUtf8().constData()); });
  if (arguments.value(1) == "codes") return copyCodes(arguments.value(2), arguments.value(3));
  changeSettings(system, arguments.value(2));
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication const application(argc, argv);
  try {
    return run(QCoreApplication::arguments());
  } catch (std::exception const& failure) {
    return fail(failure.what());
  }
}
