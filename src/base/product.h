// Names of the product that people see. Read by the resource compiler as well as by C++, so plain #defines.
#pragma once

// They are the same in every language. String resources and captions are in the string table instead.
#define KD_MAKER "Keldrin"
#define KD_PRODUCT "Veltranet"
// A placeholder of the domain that is reserved for examples, until the maker supplies its own.
#define KD_WEB_ADDRESS "https://www.keldrin.example/"
