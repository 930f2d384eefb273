// Two lights and a sky, which go round with the camera.
[Vertex_Shader]
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 eye_position;
OUT vec3 eye_normal;
OUT vec2 uv;
OUT vec3 tint;

void main()
{
    tint = VERTEX_COLOR.rgb;
    eye_position = (orvex_ModelViewMatrix * POSITION).xyz;
    eye_normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    // Images have their first row at the top, texture coordinates their origin at the bottom.
    uv = vec2(TEXCOORD.x, 1.0 - TEXCOORD.y);
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform mat4 orvex_ViewMatrix;
uniform vec4 to_sun;          // directions of the world
uniform vec4 to_fill;
uniform vec4 to_sky;
uniform vec4 diffuse_color;   // w: opacity
uniform vec4 specular_color;  // w: shininess
uniform float textured;       // 0 or 1
uniform float colored;        // 1: vertices have colours of their own
uniform float faceted;        // 1: the normals are those of the faces
uniform sampler2D diffuse_map;
IN vec3 eye_position;
IN vec3 eye_normal;
IN vec2 uv;
IN vec3 tint;

vec3 to_linear(vec3 srgb) { return pow(srgb, vec3(2.2)); }
vec3 to_srgb(vec3 linear) { return pow(linear, vec3(1.0 / 2.2)); }

vec3 seen(vec4 direction) { return normalize(mat3(orvex_ViewMatrix) * direction.xyz); }

vec3 light(vec3 to_light, vec3 strength, vec3 albedo, vec3 normal, vec3 to_eye)
{
    float diffuse = max(dot(normal, to_light), 0.0);
    float shininess = max(specular_color.w, 1.0);
    float lobe = pow(max(dot(normal, normalize(to_light + to_eye)), 0.0), shininess * 4.0);
    vec3 highlight = to_linear(specular_color.rgb) * lobe * diffuse * (shininess + 2.0) * 0.04;
    return strength * (albedo * diffuse + highlight);
}

void main()
{
    vec4 texel = mix(vec4(1.0), SAMPLE(diffuse_map, uv), textured);
    vec3 albedo = to_linear(diffuse_color.rgb * texel.rgb * mix(vec3(1.0), tint, colored));
    vec3 to_eye = normalize(-eye_position);
    vec3 face_normal = normalize(cross(dFdx(eye_position), dFdy(eye_position)));
    bool has_normal = faceted < 0.5 && dot(eye_normal, eye_normal) > 0.0;
    vec3 normal = has_normal ? normalize(eye_normal) : face_normal;
    // Files disagree about which side is the front: both are lit.
    normal = dot(normal, to_eye) < 0.0 ? -normal : normal;

    float up = dot(normal, seen(to_sky)) * 0.5 + 0.5;
    vec3 sum = albedo * mix(vec3(0.05, 0.045, 0.04), vec3(0.17, 0.19, 0.23), up);
    sum += light(seen(to_sun), vec3(1.05, 1.0, 0.92), albedo, normal, to_eye);
    sum += light(seen(to_fill), vec3(0.12, 0.15, 0.2), albedo, normal, to_eye);
    COLOR = vec4(to_srgb(sum), diffuse_color.a);
}
