/// The functions of a frei0r filter, as hosts look them up by name. frei0r.h describes them.
#include <vlvk/version.h>
#include "plugins/about.h"
#include "plugins/frei0r/frei0r_api.h"
#include "plugins/frei0r/instance.h"
#include "plugins/frei0r/parameters.h"

using vlvk::frei0r::Instance;
using vlvk::frei0r::kParameterCount;
using vlvk::frei0r::kTable;
using vlvk::frei0r::Parameter;

namespace {

// Hosts go on with what f0r_construct gave them, even if that is nothing.
bool isThere(f0r_instance_t instance, f0r_param_t param, int param_index) {
  return instance != nullptr && param != nullptr && param_index >= 0 && param_index < kParameterCount;
}

}  // namespace

int f0r_init() {
  return 1;
}

void f0r_deinit() {}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
  info->name = "vlvkmakeup";
  info->author = vlvk::plugins::kAuthor;
  info->plugin_type = F0R_PLUGIN_TYPE_FILTER;
  info->color_model = F0R_COLOR_MODEL_RGBA8888;
  info->frei0r_version = FREI0R_MAJOR_VERSION;
  info->major_version = VLVK_VERSION_MAJOR;
  info->minor_version = VLVK_VERSION_MINOR;
  info->num_params = kParameterCount;
  info->explanation = vlvk::plugins::kDescription;
}

void f0r_get_param_info(f0r_param_info_t* info, int param_index) {
  if (!isThere(info, info, param_index)) return;
  const vlvk::frei0r::ParameterText& text = vlvk::frei0r::parameterText(param_index);
  info->name = text.name;
  info->type = text.type;
  info->explanation = text.explanation;
}

f0r_instance_t f0r_construct(unsigned width, unsigned height) {
  return Instance::create(width, height);
}

void f0r_destruct(f0r_instance_t instance) {
  delete static_cast<Instance*>(instance);
}

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
  if (!isThere(instance, param, param_index)) return;
  auto* filter = static_cast<Instance*>(instance);
  if (param_index == kTable) {
    filter->setTablePath(*static_cast<f0r_param_string*>(param));
  } else {
    filter->setNumber(static_cast<Parameter>(param_index), *static_cast<double*>(param));
  }
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
  if (!isThere(instance, param, param_index)) return;
  auto* filter = static_cast<Instance*>(instance);
  if (param_index == kTable) {
    *static_cast<f0r_param_string*>(param) = filter->tablePath();
  } else {
    *static_cast<double*>(param) = filter->number(static_cast<Parameter>(param_index));
  }
}

void f0r_update(f0r_instance_t instance, double /*time*/, const std::uint32_t* inframe, std::uint32_t* outframe) {
  if (instance != nullptr) static_cast<Instance*>(instance)->process(inframe, outframe);
}
