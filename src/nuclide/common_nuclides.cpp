#include "nuclide/common_nuclides.h"

#include <algorithm>
#include <array>

namespace kestrel {
namespace {

// Natural ones and their daughters, sources, activation, fission and medicine.
constexpr std::array<std::string_view, 82> commonNuclides = {
    "Be-  7g", "F - 18g", "Na- 22g",  "Na- 24g", "Al- 28g", "Ar- 41g",  "K - 40g",  "Sc- 46g",
    "Cr- 51g", "Mn- 54g", "Mn- 56g",  "Fe- 59g", "Co- 56g", "Co- 57g",  "Co- 58g",  "Co- 60g",
    "Cu- 64g", "Zn- 65g", "Ga- 67g",  "Se- 75g", "Br- 82g", "Sr- 85g",  "Y - 88g",  "Zr- 95g",
    "Nb- 95g", "Mo- 99g", "Tc- 99m1", "Ru-103g", "Ru-106g", "Cd-109g",  "Ag-108m1", "Ag-110m1",
    "In-111g", "Sn-113g", "Sb-122g",  "Sb-124g", "Sb-125g", "Te-132g",  "I -123g",  "I -125g",
    "I -131g", "I -132g", "I -133g",  "I -135g", "Xe-123g", "Xe-133g",  "Xe-135g",  "Ba-133g",
    "Cs-134g", "Cs-137g", "Ba-140g",  "La-140g", "Ce-139g", "Ce-141g",  "Ce-144g",  "Nd-147g",
    "Eu-152g", "Eu-154g", "Eu-155g",  "Lu-177g", "Ta-182g", "W -187g",  "Ir-192g",  "Au-198g",
    "Hg-203g", "Tl-201g", "Tl-208g",  "Pb-210g", "Pb-212g", "Pb-214g",  "Bi-207g",  "Bi-212g",
    "Bi-214g", "Ra-226g", "Ac-228g",  "Th-228g", "Th-234g", "Pa-234m1", "U -235g",  "Np-239g",
    "Am-241g", "Pa-233g"};

}  // namespace

bool isCommonNuclide(std::string_view key) {
    return std::ranges::find(commonNuclides, key) != commonNuclides.end();
}

}  // namespace kestrel
