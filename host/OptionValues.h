// OptionValues: what all subcommands have on their command lines, and values of options.
#pragma once

#include "CommandLine.h"
#include "Options.h"

#include <QString>
#include <QStringList>
#include <optional>

namespace kvn::host {

constexpr int kAnyNumber = -1;  ///< of arguments, but one at least

/// The options of all subcommands.
void prepare(CommandLine& parser, QString const& description);
/// False when the help or the version was asked for and has been printed.
/// @throws UsageError for what is not understood, and for another number of arguments than `positionals`.
bool goesOn(CommandLine& parser, QStringList const& arguments, char const* usage, int positionals);

void addInputKind(CommandLine& parser);
void addOutputKind(CommandLine& parser);

/// @param inputs  how many of the arguments are read, -1 for all.
void takeCommonOptions(CommandLine const& parser, CommonOptions& options, int inputs = 1);
template <typename Options>
Options commonOptions(CommandLine const& parser, int inputs = 1) {
  Options options;
  takeCommonOptions(parser, options, inputs);
  return options;
}
/// Takes the kind of what is written to standard output. @return the name of the file, or one with the suffix of it.
/// @param kinds  that can be written there.
QString takeOutputKind(CommandLine const& parser, QString const& file, CommonOptions& options,
                       QStringList const& kinds);

// Values of options; each throws UsageError for one that is none.

std::optional<double> numberOption(QCommandLineParser const& parser, QString const& name);
/// An a-priori error. It is kept as a float, so that it must be in range as a float.
std::optional<float> errorOption(QCommandLineParser const& parser, QString const& name, bool mayBeZero);
/// A number within bounds.
std::optional<double> boundedOption(QCommandLineParser const& parser, QString const& name, double least,
                                    double largest);
/// The name of a file; empty where there is none.
QString fileOption(QCommandLineParser const& parser, QString const& name);

}  // namespace kvn::host
