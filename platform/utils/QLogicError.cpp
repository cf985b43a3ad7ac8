#include <utils/QLogicError.h>

QLogicError::QLogicError(char const* text) : std::logic_error(text) {}
QLogicError::QLogicError(QString const& text) : std::logic_error(text.toStdString()) {}
QLogicError::~QLogicError() = default;
