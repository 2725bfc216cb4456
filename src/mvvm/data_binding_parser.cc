#include "mvvm/data_binding_parser.h"

#include "base/log.h"
#include "base/str_token.h"
#include "base/str_utils.h"

namespace vm {

DataBinding* DataBindingParser::FromString(const std::string& str) {
  OVUI_CHECK(str.size() > 2, nullptr);
  auto* binding = new DataBinding();
  DataBindingParser parser(binding);
  parser.Parse(str, "Binding", "Path");
  return binding;
}

bool DataBindingParser::FromString(const std::string& str, std::vector<DataBinding*>& bindings) {
  // Runs of line ends separate the rules, so blank lines give no token.
  const auto add = [](void* list, const std::string& line) {
    if (DataBinding* binding = FromString(line))
      static_cast<std::vector<DataBinding*>*>(list)->push_back(binding);
    return true;
  };
  return base::StrToTokens(str, add, &bindings, "\r\n");
}

std::string DataBindingParser::ToString(const DataBinding* binding) {
  OVUI_CHECK(binding != NULL, std::string());
  // The tag runs straight into "Path". This text describes a binding (for logs
  // and inspection) and is not meant to be parsed back; its form is kept stable.
  std::string text = "{BindingPath=" + binding->path;

  text += ", Trigger=";
  switch (binding->trigger) {
    case DataBinding::TRIGGER_CHANGED:
      text += "Changed";
      break;
    case DataBinding::TRIGGER_EXPLICIT:
      text += "Explicit";
      break;
    default:
      text += "Changing";
      break;
  }

  text += ", Mode=";
  switch (binding->mode) {
    case DataBinding::MODE_ONE_WAY_TO_MODEL:
      text += "OneWayToModel";
      break;
    case DataBinding::MODE_ONCE:
      text += "Once";
      break;
    case DataBinding::MODE_ONE_WAY:
      text += "OneWay";
      break;
    default:
      text += "TwoWay";
      break;
  }

  if (!binding->converter.empty()) text += ", Converter=" + binding->converter;
  if (!binding->validator.empty()) text += ", Validator=" + binding->validator;
  text += "}";
  return text;
}

bool DataBindingParser::OnKeyValue(const std::string& key, const std::string& value) {
  OVUI_CHECK(this->binding != NULL, false);
  const std::string k = base::StrUtils::ToLower(key);
  if (IEqual(k, "Path")) {
    // `{Binding Path}`: the property is named like the key, in lower case.
    if (value.empty() && this->binding->path.empty()) {
      this->binding->path = k;
    } else {
      this->binding->path = value;
    }
  } else if (IEqual(k, "Mode")) {
    // "TwoWay" only in exact case. "Once" is not accepted here although
    // ToString writes it: a binding that updates once is made in code.
    if (value == "TwoWay") {
      this->binding->mode = DataBinding::MODE_TWO_WAY;
    } else if (IEqual(value, "OneWay")) {
      this->binding->mode = DataBinding::MODE_ONE_WAY;
    } else if (IEqual(value, "OneWayToModel")) {
      this->binding->mode = DataBinding::MODE_ONE_WAY_TO_MODEL;
    }
  } else if (IEqual(k, "Converter")) {
    this->binding->converter = value;
  } else if (IEqual(k, "Validator")) {
    this->binding->validator = value;
  } else if (IEqual(k, "Trigger")) {
    if (IEqual(value, "Changed")) {
      this->binding->trigger = DataBinding::TRIGGER_CHANGED;
    } else if (IEqual(value, "Changing")) {
      this->binding->trigger = DataBinding::TRIGGER_CHANGING;
    } else {
      this->binding->trigger = DataBinding::TRIGGER_EXPLICIT;
    }
  } else {
    this->binding->params[k] = value;
  }
  return true;
}

}  // namespace vm
