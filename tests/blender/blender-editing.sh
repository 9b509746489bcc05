# Registered as Blender's program for the round trip: Blender as the bridge starts it,
# with an edit and the send step after the receive step.
exec "${NEQBRIDGE_TEST_BLENDER:-blender}" --factory-startup "$@" \
    --python "$(dirname "$0")/edit_and_send.py"
