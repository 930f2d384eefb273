#!/usr/bin/env bash
# Runs the GL tests on less than the driver offers, as if on other machines: scripts/masks.sh [build/release]
#
# Mesa's software driver takes masks for versions and extensions. Each test program runs under each mask
# with all of its tests but those that the table below leaves out, each with its reason. A row that
# leaves out nothing any more, and a program that has no test left, fail. What a program printed is kept
# in BUILD/masks/MASK/PROGRAM.log.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}

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

# What is left out: masks, program (* for each), tests (* for the program as a whole), reason.
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
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.takes_up_a_new_size/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | egl_window_test | on/EglWindow.lists_the_contexts_extensions/* | asks for extensions one by one, as from 3.0 on
gl_2_1 no_vertex_arrays | x11_window_test | on/X11Window.shows_what_was_drawn_in_its_own_pixels/* | the question for the version by names of 3.0 leaves an error
gl_2_1 no_vertex_arrays | gl_debug_test | on/GlDebugWindows.tell_the_log_of_mistakes_while_they_happen/* | asks for the flags of a context, which 3.0 has
gl_2_1 no_vertex_arrays | hud_gl_test | on/HudPictures.are_drawn_by_these_calls/* | asserts the program of contexts from 3.0 on; hud_2_1_test has the other
gl_2_1 no_vertex_arrays | hud_gl_test | on/HudPictures.end_with_everything_they_made/* | asserts the program of contexts from 3.0 on; hud_2_1_test has the other
gl_2_1 no_vertex_arrays | hud_gl_test | on/HudPictures.fail_* | asserts the program of contexts from 3.0 on; hud_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.end_with_everything_they_made/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.of_a_camera_are_drawn_by_these_calls_and_leave_this_state/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.of_an_object_are_drawn_by_these_calls/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.report_* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
gl_2_1 no_vertex_arrays | tripod_visualizer_gl_test | on/TripodPictures.take_texts_of_the_host/* | asserts the program of contexts from 3.0 on; tripod_visualizer_2_1_test has the other
no_vertex_arrays | draw_allocation_gl_test | on/DrawingAllocations.are_none_with_a_program_and_a_material/* | draws from a vertex array
no_vertex_arrays | vertex_buffers_gl_test | on/VertexBuffer* | asserts the path that draws from vertex arrays
no_vertex_arrays | points_gl_test | on/* | asserts the path that draws from vertex arrays
no_vertex_arrays | points_gl_test | PolylinesOfClientArrays.with_a_vertex_array_from_before* | makes a vertex array first
no_vertex_arrays | graph_gl_test | on/GraphInAProgram.* | draws from vertex arrays
no_vertex_arrays | mad_led_bar_gl_test | * | draws from vertex arrays
no_vertex_arrays | skybox_gl_test | * | draws from vertex arrays
no_vertex_arrays no_debug | points_gl_test | PointsOfTheFixedPipeline.show_pools_of_both_layouts | with any extension masked the driver refuses GL_POINT_SPRITE
no_vertex_arrays no_debug | points_gl_test | VertexPoolsOfClientArrays.* | with any extension masked the driver refuses GL_POINT_SPRITE
no_vertex_arrays no_debug | renderer_opengl_test | on/RendererOpenGLQueries.give_the_extension_text_where_there_is_one/* | with any extension masked the text of all lacks old ones
no_vertex_arrays | gl_debug_test | *GlLabels* | with any extension masked the text of 2.1 lacks KHR_debug
no_vertex_arrays | gl_debug_test | on/GlDebugOfAHost.* | with any extension masked the text of 2.1 lacks KHR_debug
'

# rows MASK PROGRAM: the patterns that are left out there.
rows() {
  awk -F ' *[|] *' -v mask="$1" -v program="$2" '
    NF == 4 && (" " $1 " ") ~ (" " mask " ") && ($2 == "*" || $2 == program) {print $3}' <<<"$left_out"
}

# tests_of PATH FILTER: how many tests the filter selects.
tests_of() {
  "$1" --gtest_list_tests --gtest_filter="$2" | grep -c '^  ' || true
}

# A row names tests that are there; one for all programs, in one of them at least.
check_table() {
  local masks_of program pattern reason name path found
  while IFS='|' read -r masks_of program pattern reason; do
    read -r masks_of <<<"$masks_of"; read -r program <<<"$program"; read -r pattern <<<"$pattern"
    [ -n "$masks_of" ] || continue
    if [ -z "${reason// /}" ]; then
      echo "no reason: $program $pattern"; return 1
    fi
    found=0
    for name in $programs; do
      [ "$program" = '*' ] || [ "$program" = "$name" ] || continue
      path=${paths[$name]}
      found=$((found + $(tests_of "$path" "$pattern")))
    done
    if [ "$found" -eq 0 ]; then
      echo "leaves out nothing: $program $pattern"; return 1
    fi
  done <<<"$left_out"
}

# run_one MASK PROGRAM PATH SETTING...
run_one() {
  local mask=$1 name=$2 path=$3; shift 3
  local log="$build/masks/$mask/$name.log" without filter count
  without=$(rows "$mask" "$name" | paste -sd :)
  if rows "$mask" "$name" | grep -qx '[*]'; then
    echo "$mask: $name is left out"; return 0
  fi
  filter="*${without:+:-$without}"
  count=$(tests_of "$path" "$filter")
  if [ "$count" -eq 0 ]; then
    echo "FAILED $mask: $name has no test left"; return 1
  fi
  if ! (cd "$(dirname "$path")" &&
        env MESA_SHADER_CACHE_DISABLE=true "$@" timeout 200 "$path" --gtest_filter="$filter") \
      >"$log" 2>&1; then
    echo "FAILED $mask: $name, see $log"
    grep '^\[  FAILED  \] [^ ]*\(,\| (\)' "$log" | sort -u | sed 's/^/  /' || tail -n 3 "$log"
    return 1
  fi
  echo "$mask: $name, $count tests"
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
