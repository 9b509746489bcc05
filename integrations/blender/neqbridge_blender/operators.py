"""The add-on's operators. Each reports failures through Blender (`self.report`) and
returns CANCELLED; no exception leaves an operator."""

import os

import bpy
from bpy.props import StringProperty
from bpy_extras.io_utils import ExportHelper, ImportHelper

from . import bridge_files, mesh_data


def _reason(error):
    if isinstance(error, OSError) and error.strerror:
        return error.strerror
    return str(error) or type(error).__name__


class _Failure(Exception):
    """A failure already phrased for the user, naming its file."""


def _read_record(path):
    try:
        return bridge_files.read_record(path)
    except Exception as error:  # any unreadable record, whatever the package raised
        shown = path or bridge_files.app_record_path() or "the Blender record"
        raise _Failure(f"cannot read the application record '{shown}': {_reason(error)}")


def _import_file(context, path, record_path, report):
    """Imports one NeQ file; raises _Failure."""
    record = _read_record(record_path)
    name = os.path.splitext(os.path.basename(path))[0]
    try:
        mesh = mesh_data.read_mesh(path, mesh_data.Flags.of_record(record, "IMPORT"))
        obj, repaired = mesh_data.build_object(context, name, mesh)
    except Exception as error:
        raise _Failure(f"cannot import '{path}': {_reason(error)}")
    if repaired:
        report({"WARNING"}, f"'{path}': faces that repeat a corner or are given twice were "
                            f"dropped ({len(obj.data.polygons)} of {len(mesh)} faces kept)")
    return obj


def _export_object(obj, path, record_path):
    """Writes the mesh object `obj` to `path`; raises _Failure."""
    if obj is None or obj.type != "MESH":
        raise _Failure(f"cannot export '{path}': the active object is not a mesh")
    record = _read_record(record_path)
    try:
        mesh = mesh_data.mesh_of(obj.data)
        mesh_data.write_mesh(path, mesh, mesh_data.Flags.of_record(record, "EXPORT"))
    except Exception as error:
        raise _Failure(f"cannot export '{path}': {_reason(error)}")
    return mesh


class _Reporting:
    """Runs `run(context)` and turns any failure into an ERROR report."""

    def execute(self, context):
        try:
            message = self.run(context)
        except _Failure as failure:
            self.report({"ERROR"}, str(failure))
            return {"CANCELLED"}
        except Exception as error:  # a defect: still reported, never raised into Blender
            self.report({"ERROR"}, f"{self.bl_label}: {_reason(error)}")
            return {"CANCELLED"}
        self.report({"INFO"}, message)
        return {"FINISHED"}


_RECORD = StringProperty(
    name="Record",
    description="Target application description file whose flags apply "
    "(empty: Blender's record in the bridge's shared folder, when there is one)",
    subtype="FILE_PATH",
    default="",
)


class IMPORT_MESH_OT_neq(_Reporting, bpy.types.Operator, ImportHelper):
    """Import a NeQ mesh"""

    bl_idname = "import_mesh.neq"
    bl_label = "Import NeQ"
    bl_options = {"REGISTER", "UNDO"}

    filename_ext = bridge_files.EXTENSION
    filter_glob: StringProperty(default="*.NeQ;*.neq", options={"HIDDEN"})
    record: _RECORD

    def run(self, context):
        obj = _import_file(context, self.filepath, self.record, self.report)
        data = obj.data
        return f"imported '{self.filepath}': {len(data.vertices)} vertices, {len(data.polygons)} faces"


class EXPORT_MESH_OT_neq(_Reporting, bpy.types.Operator, ExportHelper):
    """Export the active mesh object as a NeQ mesh"""

    bl_idname = "export_mesh.neq"
    bl_label = "Export NeQ"

    filename_ext = bridge_files.EXTENSION
    filter_glob: StringProperty(default="*.NeQ;*.neq", options={"HIDDEN"})
    record: _RECORD

    def run(self, context):
        mesh = _export_object(context.active_object, self.filepath, self.record)
        return f"wrote '{self.filepath}': {len(mesh.vertices)} vertices, {len(mesh)} faces"


class NEQBRIDGE_OT_receive(_Reporting, bpy.types.Operator):
    """Import every object the bridge's host listed for Blender"""

    bl_idname = "neqbridge.receive"
    bl_label = "Receive from the NeQ bridge"
    bl_options = {"REGISTER", "UNDO"}

    def run(self, context):
        listing = bridge_files.host_file(bridge_files.OBJECT_LIST_FILE)
        try:
            names = bridge_files.read_object_list()
        except Exception as error:
            raise _Failure(f"cannot read the object list '{listing}': {_reason(error)}")
        if not names:
            raise _Failure(f"the object list '{listing}' names no object")
        for name in names:
            _import_file(context, bridge_files.project_file(name), "", self.report)
        return f"received {len(names)} object(s): {', '.join(names)}"


class NEQBRIDGE_OT_send(_Reporting, bpy.types.Operator):
    """Send the active mesh object back to the bridge's host"""

    bl_idname = "neqbridge.send"
    bl_label = "Send to the NeQ bridge"

    def run(self, context):
        obj = context.active_object
        name = bridge_files.object_name(obj.name if obj else "")
        path = bridge_files.project_file(name)
        _export_object(obj, path, "")
        try:
            bridge_files.publish([name], path)
        except Exception as error:
            raise _Failure(f"cannot list '{name}' for the host: {_reason(error)}")
        return f"sent '{name}' to '{path}'"
