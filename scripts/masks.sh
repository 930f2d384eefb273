#!/usr/bin/env bash
# Runs the GL tests on less than the driver offers, as if on other machines:
# scripts/masks.sh [build/release] [the masks that are wanted, else all]
#
# Mesa's software driver takes masks for versions and extensions. Each test program runs under each mask
# with all of its tests but those that the table below leaves out, each with its reason. What is left out
# runs as well, by itself, and has to fail: a test that passes under its mask is not to be left out. A
# row that names no test fails, too. What a program printed is kept in BUILD/masks/MASK/PROGRAM.log,
# and in PROGRAM.left_out.log.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
wanted=" ${*:2} "

# Each mask: its name, and what it sets.
masks='
late              MESA_GL_VERSION_OVERRIDE=3.3 MESA_EXTENSION_OVERRIDE=-GL_ARB_bindless_texture:-GL_ARB_compute_shader:-GL_ARB_shader_image_load_store:-GL_ARB_gpu_shader_fp64
gl_2_1            MESA_GL_VERSION_OVERRIDE=2.1
core_3_2          MESA_GL_VERSION_OVERRIDE=3.2
no_vertex_arrays  MESA_GL_VERSION_OVERRIDE=2.1 MESA_EXTENSION_OVERRIDE=-GL_ARB_vertex_array_object
no_debug          MESA_EXTENSION_OVERRIDE=-GL_KHR_debug
'

# The programs that draw by contexts of the driver. Those not named here choose their own mask in their
# CMakeLists.txt (names with 2_1), or run the same engine through whole programs, in windows for the most
# part: the examples, the guide and orvex-render.
programs='
gl_recorder_test gl_context_test renderer_opengl_test gl_debug_test gpu_program_gl_test
draw_allocation_gl_test vertex_buffers_gl_test points_gl_test textures_gl_test render_target_gl_test
egl_window_test x11_window_test wayland_window_test font_gl_test hud_gl_test graph_allocation_gl_test
graph_gl_test tripod_visualizer_gl_test mad_led_bar_gl_test skybox_gl_test artifact_scanner_gl_test
'

# What is left out: masks, program (* for each), a filter of tests as --gtest_filter takes it, reason.
left_out='
gl_2_1 no_vertex_arrays | * | */core* | the driver refuses a core context
gl_2_1 no_vertex_arrays | renderer_opengl_test | *InCore.* | the driver refuses a core context
gl_2_1 no_vertex_arrays | egl_window_test | EglCoreWindow.* | the driver refuses a core context
late | gpu_program_gl_test | on/AtomicCounterBuffer.counts_in_a_shader/* | counts in a compute shader
late | gpu_program_gl_test | on/GpuProgramCompute.*dispatches* | dispatches, which 4.3 has
late | gpu_program_gl_test | on/MemoryBarrier.translates_each_bit/* | asserts a call that 4.2 has
late | gpu_program_gl_test | on/UniformBuffer.serves_a_program_from_the_front_end/* | draws by a compute program
late gl_2_1 no_vertex_arrays | gpu_program_gl_test | on/GpuProgramLoad.knows_all_six_stages/* | compiles the stages of 3.2, 4.0 and 4.3
late gl_2_1 no_vertex_arrays | gpu_program_gl_test | on/GpuUniforms.reach_the_program/* | sends doubles, which 4.0 has
late gl_2_1 no_vertex_arrays | gpu_program_gl_test | on/GpuUniforms.set_by_name_ask_for_the_location_at_each_call/* | sends doubles
late gl_2_1 no_vertex_arrays | gpu_program_gl_test | on/GpuUniforms.that_* | sends doubles
late | points_gl_test | on/*compute_program* | moves points by a compute program
late gl_2_1 no_vertex_arrays | renderer_opengl_test | on/GlFunctions.are_null_at_first_and_after_clear/* | counts more entries than there are
late gl_2_1 no_vertex_arrays | renderer_opengl_test | on/GlFunctions.carry_on_without_a_hidden_entry/* | wants the entries for doubles
late gl_2_1 no_vertex_arrays | renderer_opengl_test | on/RendererOpenGLQueries.ask_the_api_for_each_limit_at_each_call/* | asks for limits of 3.2 and 4.x
late | renderer_opengl_test | on/RendererOpenGLQueries.read_work_groups_in_three_directions/* | asks for limits of compute
late | textures_gl_test | on/TextureUnits.image_units_are_emptied_by_null_and_refuse_what_cannot_be/* | binds to image units, which 4.2 has
late | textures_gl_test | on/TextureUnits.image_units_take_access_and_format/* | binds to image units
late | textures_gl_test | on/TextureUnits.reset_all_goes_through_every_unit/* | asserts the call that empties an image unit
late | textures_gl_test | on/TextureUnits.reset_empties_a_unit_and_goes_back_to_the_first/* | asserts the call that empties an image unit
gl_2_1 no_vertex_arrays | renderer_opengl_test | on/GlFunctions.read_version_and_profile_of_the_context/* | asks for the version by names of 3.0
gl_2_1 no_vertex_arrays | renderer_opengl_test | on/RendererOpenGLQueries.read_the_version_through_the_pointers_that_are_given/* | asks for the version by names of 3.0
gl_2_1 no_vertex_arrays | renderer_opengl_test | on/RendererOpenGLStart.forgets_a_gl2_context_at_the_next_start/* | wants a context from 3.0 on to start in
gl_2_1 no_vertex_arrays | renderer_opengl_test | on/RendererOpenGLStart.starts_again_after_a_stop_with_a_reset_state/* | asserts the calls of a start from 3.0 on
gl_2_1 no_vertex_arrays | renderer_opengl_test | on/RendererOpenGLStart.takes_up_the_context/* | asserts the calls of a start from 3.0 on
gl_2_1 no_vertex_arrays | render_target_gl_test | on/RenderTargetCalls.of_the_clears/* | asserts calls of 3.0
gl_2_1 no_vertex_arrays | render_target_gl_test | on/RenderTargetTest.fills_each_of_several_textures/* | clears one buffer, by a call of 3.0
gl_2_1 no_vertex_arrays | render_target_gl_test | on/RenderTargetTest.is_sampled_as_a_texture/* | clears one buffer, by a call of 3.0
gl_2_1 no_vertex_arrays | render_target_gl_test | on/RenderTargetTest.of_depth_alone_is_drawn_into_and_sampled/* | clears one buffer, by a call of 3.0
gl_2_1 no_vertex_arrays | render_target_gl_test | on/RenderTargetTest.takes_a_draw_buffer_that_is_not_there_as_the_apis_affair/* | clears one buffer, by a call of 3.0
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.keeps_the_pixels_that_are_drawn_into_it/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.adopts_a_hosts_context_and_never_ends_it/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.tells_the_version_of_an_adopted_context/* | asks for the version by names of 3.0
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.is_told_when_the_driver_is_reset/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.is_plain_where_a_host_asks_for_that/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.takes_up_a_new_size/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.lists_the_contexts_extensions/* | asks for extensions one by one, as from 3.0 on
gl_2_1 no_vertex_arrays | x11_window_test | on/X11Window.shows_what_was_drawn_in_its_own_pixels/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | x11_window_test | X11ConnectionTest.a_second_context_takes_the_place_of_the_first_on_one_drawable | the driver refuses a core context
gl_2_1 no_vertex_arrays | gl_debug_test | on/GlDebugWindows.tell_the_log_of_mistakes_while_they_happen/* | asks for the flags of a context, which 3.0 has
gl_2_1 no_vertex_arrays | hud_gl_test | on/HudPictures.are_drawn_by_these_calls/* | asserts the program of contexts from 3.0 on; hud_2_1_test has the other
gl_2_1 no_vertex_arrays | hud_gl_test | on/HudPictures.end_with_everything_they_made/* | asserts the program of contexts from 3.0 on; hud_2_1_test has the other
gl_2_1 no_vertex_arrays | hud_gl_test | on/HudPictures.fail_* | asserts the program of contexts from 3.0 on; hud_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.end_with_everything_they_made/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.of_a_camera_are_drawn_by_these_calls_and_leave_this_state/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.of_an_object_are_drawn_by_these_calls/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.report_* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.take_texts_of_the_host/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
no_vertex_arrays | vertex_buffers_gl_test | adopted/RecordContexts.*/compatibility*:-*.a_mesh_whose_window_is_gone_*/compatibility_shared:*.objects_of_windows_that_share_*/compatibility | asserts the path that draws from vertex arrays
no_vertex_arrays | vertex_buffers_gl_test | of/RecordsOfEndedWindows.a_mesh_outlives_its_windows/compat* | asserts the path that draws from vertex arrays
no_vertex_arrays | vertex_buffers_gl_test | on/UnadoptedContexts.*/compatibility | contexts of hosts are known by a vertex array
no_vertex_arrays | gpu_program_gl_test | adopted/ProgramContexts.a_program_is_bound_where_it_was_loaded/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | gpu_program_gl_test | adopted/ProgramContexts.a_program_that_is_loaded_in_both_windows_is_bound_in_both/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | gpu_program_gl_test | adopted/ProgramContexts.a_uniform_block_has_a_buffer_in_each_window_where_it_was_made/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | gpu_program_gl_test | adopted/ProgramContexts.a_uniform_block_is_used_where_it_was_made/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | textures_gl_test | adopted/TextureContexts.an_unload_in_one_window_ends_it_in_the_other/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | textures_gl_test | adopted/TextureContexts.an_update_reaches_every_window/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | render_target_gl_test | adopted/TargetContexts.have_the_last_size_in_every_window/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | render_target_gl_test | adopted/TargetContexts.outlive_their_windows/compat* | a context that is adopted is known by a vertex array
no_vertex_arrays | render_target_gl_test | adopted/TargetContexts.take_nobody_elses_objects_for_theirs/compatibility | a context that is adopted is known by a vertex array
no_vertex_arrays | render_target_gl_test | adopted/TargetContexts.that_are_killed_in_one_window_leave_nothing_in_the_other/compat* | a context that is adopted is known by a vertex array
gl_2_1 no_vertex_arrays | render_target_gl_test | on/RenderTargetTest.reads_each_texture_as_floats_into_rows_of_any_length/* | clears one buffer, by a call of 3.0
no_vertex_arrays | draw_allocation_gl_test | on/DrawingAllocations.are_none_with_a_program_and_a_material/* | draws from a vertex array
no_vertex_arrays | vertex_buffers_gl_test | on/VertexBuffer*/compatibility:-*.makes_no_instance_buffer_*:*.fails_where_*:*.sends_no_indexed_call_*:*.draws_vertices_without_faces_*:*.kills_only_on_*:*.keeps_ids_*:*.makes_nothing_by_halves_*:*.refuses_null_*:*.makes_maps_orphans_*:*.forces_usages_on_buffers_* | asserts the path that draws from vertex arrays
no_vertex_arrays | vertex_buffers_gl_test | of/DrawOrder*.*/compatibility | asserts the path that draws from vertex arrays
no_vertex_arrays | vertex_buffers_gl_test | of/RecordContexts.*/compatibility*:-*.a_mesh_whose_window_is_gone_*/compatibility_shared:*.objects_of_windows_that_share_*/compatibility | asserts the path that draws from vertex arrays
no_vertex_arrays | vertex_buffers_gl_test | of/DrawOrder.a_mesh_that_ends_leaves_nothing_of_the_other_path/client_arrays | draws on either path
no_vertex_arrays | vertex_buffers_gl_test | of/DrawOrder.the_path_may_change_between_prepare_and_finish/client_arrays | draws on either path
no_vertex_arrays | vertex_buffers_gl_test | on/AdoptedContexts.*/compatibility | draws on either path
no_vertex_arrays | vertex_buffers_gl_test | of/ContextLoss.ends_with_*/compatibility*:of/ContextLoss.is_survived_*/compatibility*:of/ContextLoss.leaves_other_*/compatibility*:of/ContextLoss.refuses_every_draw/compatibility* | asserts the path that draws from vertex arrays
no_vertex_arrays | vertex_buffers_gl_test | of/RefusedBuffers.leave_lines_*/compatibility:of/RefusedMeshBuffers.*/compatibility | asserts the path that draws from vertex arrays
no_vertex_arrays no_debug | vertex_buffers_gl_test | of/RefusedBuffers.leave_points_undrawn_until_the_next_prepare/*:-*/core* | with any extension masked the driver refuses GL_POINT_SPRITE
gl_2_1 | vertex_buffers_gl_test | on/AdoptedContexts.keep_what_the_host_had_bound/compatibility | the question for the version by names of 3.0 leaves an error
no_vertex_arrays | vertex_buffers_gl_test | HostContexts.* | draws on either path
no_vertex_arrays no_debug | vertex_buffers_gl_test | of/RecordContexts.polylines_and_points_are_uploaded_once_for_each_window/client_arrays*:of/RecordContexts.polylines_and_points_are_uploaded_once_for_each_window/compatibility* | with any extension masked the driver refuses GL_POINT_SPRITE
no_debug | vertex_buffers_gl_test | adopted/RecordContexts.polylines_and_points_are_uploaded_once_for_each_window/compatibility* | with any extension masked the driver refuses GL_POINT_SPRITE
no_vertex_arrays | points_gl_test | on/*/compatibility:-*.without_vertices_make_nothing/*:*.refuse_null/*:*.do_nothing_without_the_entry_points/*:*.hand_the_path_of_client_arrays_*:*.wait_for_both_kinds_*:*.finish_nothing_without_* | asserts the path that draws from vertex arrays
no_vertex_arrays | points_gl_test | PolylinesOfClientArrays.with_a_vertex_array_from_before* | makes a vertex array first
no_vertex_arrays | graph_gl_test | on/GraphInAProgram.* | draws from vertex arrays
no_vertex_arrays | mad_led_bar_gl_test | on/MadLedBarPictures.*/compatibility | draws from vertex arrays
no_vertex_arrays | skybox_gl_test | on/SkyboxPictures.*/compatibility:-*.are_the_same_wherever_* | draws from vertex arrays
no_vertex_arrays no_debug | points_gl_test | PointsOfTheFixedPipeline.show_pools_of_both_layouts | with any extension masked the driver refuses GL_POINT_SPRITE
no_vertex_arrays no_debug | points_gl_test | VertexPoolsOfClientArrays.*:-*.without_points_*:*.do_nothing_without_* | with any extension masked the driver refuses GL_POINT_SPRITE
no_vertex_arrays no_debug | renderer_opengl_test | on/RendererOpenGLQueries.give_the_extension_text_where_there_is_one/compatibility | with any extension masked the text of all lacks old ones
no_vertex_arrays | gl_debug_test | *GlLabels* | with any extension masked the text of 2.1 lacks KHR_debug
no_vertex_arrays | gl_debug_test | on/GlDebugOfAHost.* | with any extension masked the text of 2.1 lacks KHR_debug
'

# rows MASK PROGRAM: the filters that are left out there, one a line.
rows() {
  awk -F ' *[|] *' -v mask="$1" -v program="$2" '
    NF == 4 && (" " $1 " ") ~ (" " mask " ") && $2 == program {print $3}' <<<"$left_out"
}

# names PATH FILTER: the tests that the filter selects; the programs refuse one that selects none.
names() {
  { "$1" --gtest_list_tests --gtest_filter="$2" 2>/dev/null || true; } | awk '/^[^ ]/ {suite = $1} /^  / {print suite $1}'
}

# Each row has a reason, and names a program of the list.
check_table() {
  awk -F ' *[|] *' -v programs=" $(echo $programs) " '
    NF == 0 {next}
    NF != 4 || $4 == "" {print "no reason: " $0; bad = 1}
    $2 != "*" && index(programs, " " $2 " ") == 0 {print "no such program: " $0; bad = 1}
    END {exit bad}' <<<"$left_out"
}

# masked PATH FILTER SETTING...
masked() {
  local path=$1 filter=$2; shift 2
  (cd "$(dirname "$path")" &&
    env MESA_SHADER_CACHE_DISABLE=true "$@" timeout 200 "$path" --gtest_filter="$filter" 2>&1) 2>/dev/null
}

# left_out_of MASK PROGRAM PATH: the tests that the rows leave out. A row without one is told, and fails.
left_out_of() {
  local filter tests result=0
  while read -r filter; do
    tests=$(names "$3" "$filter")
    if [ -z "$tests" ]; then
      echo "FAILED $1: $2 has no $filter" >&2; result=1
    fi
    echo "$tests"
  done < <(rows "$1" "$2")
  return "$result"
}

# check_left_out MASK PROGRAM PATH LOG TESTS SETTING...: none of the tests passes. One that ends the process
# is the last of its run; the others then run without it.
check_left_out() {
  local mask=$1 name=$2 path=$3 log=$4 tests=$5 rest; shift 5
  : >"$log"
  while [ -n "$tests" ]; do
    masked "$path" "$(paste -sd : <<<"$tests")" "$@" >>"$log" || true
    rest=$(grep -vxF -f <(sed -n 's/^\[ RUN      \] //p' "$log"; echo) <<<"$tests" || true)
    [ "$rest" != "$tests" ] || break
    tests=$rest
  done
  ! sed -n "s/^\[       OK \]/FAILED $mask: $name passes, and is left out:/p" "$log" | grep .
}

# run_one MASK PROGRAM PATH SETTING...
run_one() {
  local mask=$1 name=$2 path=$3 result=0; shift 3
  local log="$build/masks/$mask/$name" everywhere here filter count
  # What is left out of every program is what the driver refuses; it isn't tried.
  everywhere=$(names "$path" "$(rows "$mask" '*' | paste -sd :)")
  here=$(left_out_of "$mask" "$name" "$path") || result=1
  here=$(sort -u <<<"$here" | grep -vxF -f <(echo "$everywhere"; echo) || true)
  filter="*:-$(paste -sd : <<<"$everywhere"$'\n'"$here")"
  count=$(names "$path" "$filter" | wc -l)
  # A few have no test left: each of theirs fails, as the check below sees.
  if [ "$count" -ne 0 ] && ! masked "$path" "$filter" "$@" >"$log.log"; then
    echo "FAILED $mask: $name, see $log.log"
    grep '^\[  FAILED  \] [^ ]*\(,\| (\)' "$log.log" | sort -u | sed 's/^/  /' || tail -n 3 "$log.log"
    result=1
  fi
  check_left_out "$mask" "$name" "$path" "$log.left_out.log" "$here" "$@" || result=1
  echo "$mask: $name, $count tests, and $(grep -c . <<<"$here" || true) that are left out"
  return "$result"
}

declare -A paths
for name in $programs; do
  paths[$name]=$(find "$PWD/$build/tests" -name "$name" -type f -perm -u+x)
  if [ -z "${paths[$name]}" ]; then
    echo "$build has no $name"; exit 1
  fi
done
check_table

# As many at a time as there are processors; a failure lets the others end.
failures=0
running=0
wait_for_one() {
  wait -n || failures=$((failures + 1))
  running=$((running - 1))
}
while read -r mask settings; do
  [ -n "$mask" ] || continue
  [ -z "${wanted// /}" ] || [ "$wanted" != "${wanted/ $mask /}" ] || continue
  mkdir -p "$build/masks/$mask"
  # A list of extensions is written without blanks above.
  variables=()
  for setting in $settings; do
    variables+=("${setting//:/ }")
  done
  for name in $programs; do
    [ "$running" -lt "$(nproc)" ] || wait_for_one
    run_one "$mask" "$name" "${paths[$name]}" "${variables[@]}" &
    running=$((running + 1))
  done
done <<<"$masks"
while [ "$running" -gt 0 ]; do
  wait_for_one
done
if [ "$failures" -ne 0 ]; then
  echo "$failures programs failed under a mask"
  exit 1
fi
