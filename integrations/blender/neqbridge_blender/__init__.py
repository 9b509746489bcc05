"""NeQ meshes in Blender: import, export and the bridge's send and receive steps.

Every NeQ file is read and written by the `neqbridge` Python package; this add-on only
moves its arrays into Blender meshes and back.
"""

bl_info = {
    "name": "NeQ bridge",
    "author": "neqbridge",
    "version": (1, 0, 0),
    "blender": (3, 4, 0),
    "location": "File > Import-Export > NeQ mesh (.NeQ)",
    "description": "Import and export NeQ meshes; send and receive them through the bridge",
    "category": "Import-Export",
}

import bpy

from . import operators

_classes = (
    operators.IMPORT_MESH_OT_neq,
    operators.EXPORT_MESH_OT_neq,
    operators.NEQBRIDGE_OT_receive,
    operators.NEQBRIDGE_OT_send,
)


def _import_entry(self, _context):
    self.layout.operator(operators.IMPORT_MESH_OT_neq.bl_idname, text="NeQ mesh (.NeQ)")
    self.layout.operator(operators.NEQBRIDGE_OT_receive.bl_idname, text="NeQ bridge: receive")


def _export_entry(self, _context):
    self.layout.operator(operators.EXPORT_MESH_OT_neq.bl_idname, text="NeQ mesh (.NeQ)")
    self.layout.operator(operators.NEQBRIDGE_OT_send.bl_idname, text="NeQ bridge: send back")


def register():
    for cls in _classes:
        bpy.utils.register_class(cls)
    bpy.types.TOPBAR_MT_file_import.append(_import_entry)
    bpy.types.TOPBAR_MT_file_export.append(_export_entry)


def unregister():
    bpy.types.TOPBAR_MT_file_export.remove(_export_entry)
    bpy.types.TOPBAR_MT_file_import.remove(_import_entry)
    for cls in reversed(_classes):
        bpy.utils.unregister_class(cls)
