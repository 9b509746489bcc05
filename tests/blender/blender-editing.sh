# Blender as the bridge starts it, then an edit (vertex 0 one unit up Blender's Z) and the send.
exec "${NEQBRIDGE_TEST_BLENDER:-blender}" --factory-startup "$@" --python-expr 'import bpy
bpy.context.active_object.data.vertices[0].co.z += 1.0
assert bpy.ops.neqbridge.send() == {"FINISHED"}'
