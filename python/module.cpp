// The module of Python's that its package asks: bytes of JSON in, bytes of JSON out. The package makes
// objects of them.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <mutex>

#include "python/opened_models.h"

namespace py = pybind11;

namespace python {
namespace {

std::mutex& workMutex() {
  static std::mutex mutex;
  return mutex;
}

/// Lets other threads of Python go on while one works. The importer and what it shares were made for one
/// thread, so work waits for work.
template <class F> auto working(F work) {
  const py::gil_scoped_release released;
  const std::lock_guard lock(workMutex());
  return work();
}

/// Throws what a handler of signals has raised, such as KeyboardInterrupt.
void raiseSignals() {
  const py::gil_scoped_acquire acquired;
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

py::tuple asTuple(const Message& message) {
  const auto text = [](const std::string& bytes) {
    return py::reinterpret_steal<py::str>(
        PyUnicode_DecodeUTF8(bytes.data(), static_cast<py::ssize_t>(bytes.size()), "replace"));
  };
  return py::make_tuple(text(message.file), text(message.level), text(message.identifier),
                        text(message.text));
}

py::tuple asTuple(const Answer& answer) {
  return py::make_tuple(py::bytes(answer.json), py::bytes(answer.text));
}

py::list asBytes(const std::vector<std::string>& texts) {
  py::list list;
  for (const std::string& text : texts) list.append(py::bytes(text));
  return list;
}

tav::LineageWalk walkOf(bool upstream, std::optional<std::uint32_t> depth, bool values) {
  return {.direction = upstream ? tav::LineageDirection::upstream : tav::LineageDirection::downstream,
          .depth = depth.value_or(tav::kUnlimitedDepth),
          .values = values};
}

py::tuple openModels(const std::vector<std::string>& inputs, const std::string& map, bool several) {
  const OpenedModels::Opened opened =
      working([&] { return OpenedModels::open(inputs, map, several, raiseSignals); });
  py::list messages;
  for (const Message& message : opened.messages) messages.append(asTuple(message));
  return py::make_tuple(opened.models, messages, opened.complete);
}

/// Faults are raised as the exception `Fault` of this module, whose arguments are those of a message.
void raiseFaults(const py::module_& module) {
  // The interpreter may end before statics do: this one is never given back.
  static PyObject* const kind = py::exception<Fault>(module, "Fault").release().ptr();
  // NOLINTNEXTLINE(performance-unnecessary-value-param): the type is not ours
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const Fault& fault) {
      PyErr_SetObject(kind, asTuple(fault.message()).ptr());
    }
  });
}

void bind(py::module_& module) {
  raiseFaults(module);
  module.attr("version") = version();
  module.def("open", &openModels);
  py::class_<OpenedModels, std::shared_ptr<OpenedModels>>(module, "OpenedModels")
      .def("only", &OpenedModels::only)
      .def("names", [](const OpenedModels& models) { return asBytes(models.names()); })
      .def("inputs", [](const OpenedModels& models) { return asBytes(models.inputs()); })
      .def("lineage",
           [](const OpenedModels& models, const std::string& name, bool upstream,
              std::optional<std::uint32_t> depth, bool values) {
             return asTuple(working([&] { return models.lineage(name, walkOf(upstream, depth, values)); }));
           })
      .def("lineage_of",
           [](const OpenedModels& models, std::uint32_t id, bool upstream, std::optional<std::uint32_t> depth,
              bool values) {
             return asTuple(working([&] { return models.lineageOf(id, walkOf(upstream, depth, values)); }));
           })
      .def("graph",
           [](const OpenedModels& models) { return py::bytes(working([&] { return models.graph(); })); })
      .def("unused",
           [](const OpenedModels& models, const std::vector<std::string>& groups) {
             return asTuple(working([&] { return models.unused(groups); }));
           })
      .def("coverage",
           [](const OpenedModels& models) { return asTuple(working([&] { return models.coverage(); })); })
      .def("document",
           [](const OpenedModels& models) { return py::bytes(working([&] { return models.document(); })); })
      .def("diff", [](const OpenedModels& before, const OpenedModels& after, const std::string& map) {
        return asTuple(working([&] { return before.diff(after, map); }));
      });
}

}  // namespace
}  // namespace python

PYBIND11_MODULE(_native, module) {
  python::bind(module);
}
