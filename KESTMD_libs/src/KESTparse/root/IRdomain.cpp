#include "KESTparse/root/IRdomain.h"

#include <algorithm>
#include <map>

#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/framework/Rules.h"
#include "KESTparse/linking/IRcontroller.h"
#include "KESTparse/linking/IRcouplings.h"
#include "KESTparse/linking/IRctrlmanipulatedvar.h"
#include "KESTparse/linking/IRkestextern.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/root/IRparallel.h"
#include "KESTparse/root/IRphysprop.h"
#include "KESTparse/subsurface/IRkestSub.h"

namespace KESTparse {

void IRdomain::getDescription(std::ostream& out) const {
  out << "KESTRIX version dedicate to multi-domain (MD) simulations (e.g., KESTCHAIN, KESTPLANE, KESTSUB, etc.). Currently, it imports the full features of former KESTRIX version 2.";
}

void IRdomain::createSubBlocks() {
  subBlock<&Self::parallel_ptr>("PARALLEL");
  subBlock<&Self::pp_ptr>("PHYSICAL_PROPERTIES");
  subBlock<&Self::cr1d_ptrV>("KESTCHAIN_1D").repeatable();
  subBlock<&Self::kestplane_ptrV>("KESTPLANE_2D").repeatable();
  subBlock<&Self::kestSub_ptrV>("KESTSUB").repeatable();
  subBlock<&Self::kestextern_ptrV>("KEST_EXTERN").repeatable();
  subBlock<&Self::couplings_ptr>("COUPLINGS");
  subBlock<&Self::ctrl_ptrV>("CONTROLLER").repeatable();
}

void IRdomain::createTags() {
  word<&Self::multiregion>("Name of the whole computation area, including all 1D and 2D regions.")
      .defaultsTo("unnamed_multiregion");
}

void IRdomain::getLongDescription(std::ostream& out) const {
  out << "Regions of one, two and three dimensions are described by the blocks KESTCHAIN_1D, KESTPLANE_2D and KESTSUB, other programs by KEST_EXTERN. COUPLINGS tells how they exchange data.";
}

void IRdomain::getExample(std::ostream& out) const {
  out << R"(DOMAIN {
  multiregion = my_rivers
  PARALLEL {
    number_threads = 4
  }
  KESTPLANE_2D {
    region_name = floodplain
    GEOMETRY {
      type = 2dm
      file = my_mesh.2dm
      STRINGDEF {
        name = my_string_name
        upstream_direction = right
      }
    }
    HYDRAULICS {
      PARAMETER {
      }
      FRICTION {
        type = strickler
        default_friction = 30
        wall_friction = off
      }
      BOUNDARY {
        type = zero_gradient
        string_name = my_string_name
      }
      INITIAL {
        type = dry
      }
    }
    TIMESTEP {
      total_run_time = 3600
    }
    OUTPUT {
      console_time_step = 60
    }
  }
}
)";
}

void IRdomain::addStandingBlocks() {
  // The values that hold for the whole file get their defaults in every conversion.
  ensureBlock("PHYSICAL_PROPERTIES");
}

bool IRdomain::isControlled(std::string_view region, std::string_view location) const {
  const auto& byRegion = controlledPlaces().byRegion;
  const auto places = byRegion.find(region);
  return places != byRegion.end() && places->second.contains(location);
}

const std::vector<IRdomain::ControlledAgain>& IRdomain::placesControlledAgain() const {
  return controlledPlaces().again;
}

const IRdomain::ControlledPlaces& IRdomain::controlledPlaces() const {
  return controlledPlaces_.get([this] {
    ControlledPlaces places;
    for (const IRcontroller* controller : ctrl_ptrV) {
      for (const IRctrlmanipulatedvar* variable : controller->manipulated) {
        const std::string& region = variable->position_region;
        const std::string& location = variable->position_identifier;
        const auto [place, isNew] = places.byRegion[region].try_emplace(location, variable);
        if (!isNew) {
          places.again.push_back({fmt::format("{}.{}", region, location), variable, place->second});
        }
      }
    }
    return places;
  });
}

const IRcalc1d* IRdomain::findChain(std::string_view region_name) const {
  const auto places = chains_.find(region_name, cr1d_ptrV, &IRcalc1d::region_name);
  return places.count == 0 ? nullptr : cr1d_ptrV[places.first];
}

const IRkestplane* IRdomain::findPlane(std::string_view region_name) const {
  const auto places = planes_.find(region_name, kestplane_ptrV, &IRkestplane::region_name);
  return places.count == 0 ? nullptr : kestplane_ptrV[places.first];
}

std::string IRdomain::perhapsRegion(std::string_view region_name) const {
  const std::string chain = perhaps(region_name, cr1d_ptrV, &IRcalc1d::region_name);
  return chain.empty() ? perhaps(region_name, kestplane_ptrV, &IRkestplane::region_name) : chain;
}

void IRdomain::checkRules() {
  ASSERT(this->getNumBlocksNamed("KESTCHAIN_1D") == cr1d_ptrV.size(), "");
  std::map<std::string_view, Subject> firstOfName;
  const auto checkNames = [this, &firstOfName]<class Region>(std::string_view keyword,
                                                             const std::vector<Region*>& regions) {
    for (std::size_t number = 0; number < regions.size(); ++number) {
      const std::string_view name = regions[number]->getTag("region_name", 0).getRawText();
      const Subject tag = about<&Region::region_name>(*regions[number]);
      const auto [first, isNew] = firstOfName.try_emplace(name, tag);
      if (!isNew) {
        report(Severity::error, *this, {tag, first->second},
               {"second-region-name", "two regions have the name '{0}'",
                "give each region a 'region_name' of its own"},
               "Region name '{}' of {} block nr. {} is already used.", name, keyword, number);
      }
    }
  };
  checkNames("KESTCHAIN_1D", cr1d_ptrV);
  checkNames("KESTPLANE_2D", kestplane_ptrV);
  checkNames("KESTSUB", kestSub_ptrV);
  checkNames("KEST_EXTERN", kestextern_ptrV);
  if (cr1d_ptrV.empty() && kestplane_ptrV.empty() && kestSub_ptrV.empty()) {
    error({"no-region", "the DOMAIN has no region that could be simulated",
           "add a KESTCHAIN_1D, KESTPLANE_2D or KESTSUB block"},
          "There is no KESTCHAIN_1D, KESTPLANE_2D or KESTSUB block defined.");
  }
}

}  // namespace KESTparse
