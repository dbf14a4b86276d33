// What the values of an Access column are.
#pragma once

namespace kestrel::jet {

enum class ColumnKind {
    Logical,  // -1 or 0
    Whole,
    Real,
    Decimal,  // a decimal fraction, as text
    Text,
    Date,  // as text, YYYY-MM-DD
    Binary,
    Other,
};

}  // namespace kestrel::jet
