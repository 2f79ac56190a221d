#include "hosts/kovacall/operation.h"

#include <algorithm>

#include "hosts/console/console.h"

namespace kova::hosts {

ArgumentReader::ArgumentReader(const std::vector<Parameter>& parameters,
                               const std::vector<std::string>& arguments, Practice& practice, Reply& reply)
    : parameters_(parameters), arguments_(arguments), practice_(practice), reply_(reply) {
  const auto single = static_cast<std::size_t>(
      std::count_if(parameters.begin(), parameters.end(), [](const Parameter& each) { return !each.many; }));
  const bool open = single != parameters.size();
  if (arguments.size() == single || (open && arguments.size() > single)) return;
  throw UsageError("takes " + std::to_string(single) + (open ? " or more" : "") +
                   (single == 1 && !open ? " argument" : " arguments") + ", not " +
                   std::to_string(arguments.size()));
}

ArgumentReader::Next ArgumentReader::Take() {
  return {parameters_[parameter_++].name, arguments_[argument_++]};
}

std::vector<std::string_view> ArgumentReader::TakeMany() {
  const std::size_t others = parameters_.size() - 1;
  const std::size_t count = arguments_.size() - others;
  ++parameter_;
  std::vector<std::string_view> taken(arguments_.begin() + static_cast<std::ptrdiff_t>(argument_),
                                      arguments_.begin() + static_cast<std::ptrdiff_t>(argument_ + count));
  argument_ += count;
  return taken;
}

}  // namespace kova::hosts
