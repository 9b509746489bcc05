"""After the bridge's receive step: moves the first vertex of the received object one
unit up (Blender's Z) and sends the object back."""

import bpy

obj = bpy.context.active_object
obj.data.vertices[0].co.z += 1.0
assert bpy.ops.neqbridge.send() == {"FINISHED"}
