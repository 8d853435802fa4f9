/// See properties.h.
#include "plugins/gstreamer/properties.h"

#include <cstddef>
#include <iterator>

namespace vlvk::gstreamer {
namespace {

// Names of values are those of the program's options.
GType contrastType() {
  static const GEnumValue values[] = {
      {VLVK_CONTRAST_RELATIVE, "Against the brightness around it", "relative"},
      {VLVK_CONTRAST_ABSOLUTE, "In levels", "absolute"},
      {0, nullptr, nullptr},
  };
  static const GType type = g_enum_register_static("GstVlvkMakeupContrast", values);
  return type;
}

GType whitenAreaType() {
  static const GEnumValue values[] = {
      {VLVK_WHITEN_ALL, "The whole picture", "all"},
      {VLVK_WHITEN_SKIN, "What has the colour of skin", "skin"},
      {0, nullptr, nullptr},
  };
  static const GType type = g_enum_register_static("GstVlvkMakeupWhitenArea", values);
  return type;
}

/// A setting of the engine; its values are numbers from `low` to `high` or those of an enumeration.
struct SettingProperty {
  const char* name;
  const char* title;
  const char* help;
  MakeupStream::Setting setting;
  int low;
  int high;
  GType (*type)() = nullptr;
};

constexpr SettingProperty kSettings[] = {
    {"whitening", "Whitening", "Whitening in percent; 0: colours stay", &VlvkSettings::whitening, 0, 100},
    {"softening", "Softening", "Smoothing of skin; 0: none", &VlvkSettings::softening, 0, 1000},
    {"radius", "Radius",
     "Reach of the smoothing in pixels, rounded up to a multiple of 8; 0: none; -1: by the size of the frame",
     &VlvkSettings::radius, VLVK_RADIUS_AUTO, 128},
    {"contrast", "Contrast", "How contrast is measured when smoothing decides what is an edge", &VlvkSettings::contrast,
     0, 0, contrastType},
    {"whiten-area", "Area of whitening", "What whitening lifts", &VlvkSettings::whitenArea, 0, 0, whitenAreaType},
    {"even-tone", "Evening of tone", "Evening of the colour of skin, such as red spots; 0: none",
     &VlvkSettings::evenTone, 0, 1000},
    {"threads", "Threads", "Bands of a frame worked on at once; 0: as many as processors, at most 8",
     &VlvkSettings::threads, 0, 64},
};

// GObject's numbers of properties begin with 1.
constexpr guint kTable = std::size(kSettings) + 1;
constexpr guint kEnabled = kTable + 1;

constexpr auto kFlags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | GST_PARAM_CONTROLLABLE |
                                                 GST_PARAM_MUTABLE_PLAYING);

GParamSpec* specOf(const SettingProperty& p, int standard) {
  if (p.type == nullptr) return g_param_spec_int(p.name, p.title, p.help, p.low, p.high, standard, kFlags);
  gst_type_mark_as_plugin_api(p.type(), static_cast<GstPluginAPIFlags>(0));
  return g_param_spec_enum(p.name, p.title, p.help, p.type(), standard, kFlags);
}

}  // namespace

void installProperties(GObjectClass* objectClass) {
  VlvkSettings defaults{};
  vlvkSettingsInit(&defaults, sizeof defaults);
  guint id = 0;
  for (const SettingProperty& property : kSettings) {
    g_object_class_install_property(objectClass, ++id, specOf(property, defaults.*property.setting));
  }
  g_object_class_install_property(
      objectClass, kTable,
      g_param_spec_string(
          "table", "Colour table",
          "File of a colour table (adjust.vlk), read at the start, or at once while running; empty: none", nullptr,
          kFlags));
  g_object_class_install_property(
      objectClass, kEnabled, g_param_spec_boolean("enabled", "Enabled", "Whether frames are changed", TRUE, kFlags));
}

void getProperty(const MakeupStream& stream, guint id, GValue* value) {
  if (id == kEnabled) {
    g_value_set_boolean(value, stream.isEnabled() ? TRUE : FALSE);
  } else if (id == kTable) {
    const std::string path = stream.table();
    g_value_set_string(value, path.empty() ? nullptr : path.c_str());
  } else {
    const SettingProperty& property = kSettings[id - 1];
    const int number = stream.setting(property.setting);
    if (property.type == nullptr) {
      g_value_set_int(value, number);
    } else {
      g_value_set_enum(value, number);
    }
  }
}

MaybeFailure setProperty(MakeupStream& stream, guint id, const GValue* value) {
  if (id == kEnabled) {
    stream.enable(g_value_get_boolean(value) != FALSE);
  } else if (id == kTable) {
    const char* path = g_value_get_string(value);
    return stream.setTable(path == nullptr ? "" : path);
  } else {
    const SettingProperty& property = kSettings[id - 1];
    stream.put(property.setting, property.type == nullptr ? g_value_get_int(value) : g_value_get_enum(value));
  }
  return {};
}

}  // namespace vlvk::gstreamer
