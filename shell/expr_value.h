#pragma once

#include <QByteArray>
#include <QString>

#include "base/types.h"

enum EXPR_OUTCOME { EXPR_NOT_PARSED, EXPR_FAILED, EXPR_HAS_VALUE };

// What an expression gives.
struct EXPR_VALUE {
  EXPR_OUTCOME Outcome = EXPR_NOT_PARSED;
  QString sError;    // of a failure
  I64 Integer = 0;   // the value as signed integer
  double Real = 0;   // the value as floating point number
  QByteArray Bytes;  // in the order of a little-endian target
  QString sPlace;    // where it was found, as ELF_GetLocationText
  QString sType;
};

// Value of an expression that is a single operand: a number, an enumerator, a constant, a variable of a simple type
// with a fixed address, the name of a function, "&" and a symbol, or "sizeof" and a symbol or type. Local names are
// those in scope where the target has halted; variables are read from the target. Main thread.
EXPR_VALUE EvalOperand(const QString& sText);
// The lines that tell of a value on the console.
QStringList ExprValueLines(const QString& sText, const EXPR_VALUE& Value);
