// Draws an image with WebGL2: contrast, gamma, colours and geometry in the shader.
import { COLOURS, GREY, OVEREXPOSED, UNDEREXPOSED } from "./colours.js";

const VERTICES = `#version 300 es
void main() {
  vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1);
  gl_Position = vec4(corner * 2.0 - 1.0, 0.0, 1.0);
}`;

const PIXELS = `#version 300 es
precision highp float;
precision highp usampler2D;
uniform usampler2D image;
uniform sampler2D colours;
uniform vec2 stage;
uniform vec4 region;
uniform float binning;
uniform mat3x2 toImage;
uniform vec3 look;      // low, high, 1 / gamma
uniform float highest;
uniform int components;
uniform bool smoothed;
uniform bool marked;
uniform vec3 under;
uniform vec3 over;
out vec4 colour;

vec3 texel(ivec2 at) {
  ivec2 last = textureSize(image, 0) - 1;
  return vec3(texelFetch(image, clamp(at, ivec2(0), last), 0).rgb);
}

vec3 value(vec2 at) {
  if (!smoothed) return texel(ivec2(floor(at)));
  vec2 from = at - 0.5;
  ivec2 first = ivec2(floor(from));
  vec2 share = fract(from);
  vec3 upper = mix(texel(first), texel(first + ivec2(1, 0)), share.x);
  vec3 lower = mix(texel(first + ivec2(0, 1)), texel(first + ivec2(1, 1)), share.x);
  return mix(upper, lower, share.y);
}

void main() {
  vec2 screen = vec2(gl_FragCoord.x, stage.y - gl_FragCoord.y);
  vec2 at = toImage * vec3(screen, 1.0);
  if (any(lessThan(at, region.xy)) || any(greaterThanEqual(at, region.xy + region.zw))) {
    colour = vec4(0.0);
    return;
  }
  vec3 raw = value((at - region.xy) / binning);
  vec3 share = pow(clamp((raw - look.x) / max(look.y - look.x, 1e-6), 0.0, 1.0), vec3(look.z));
  if (components == 1) {
    colour = texelFetch(colours, ivec2(int(share.r * 255.0 + 0.5), 0), 0);
    if (marked && raw.r >= highest) colour = vec4(over, 1.0);
    if (marked && raw.r <= 0.0) colour = vec4(under, 1.0);
  } else {
    colour = vec4(share, 1.0);
    if (marked && any(greaterThanEqual(raw, vec3(highest)))) colour = vec4(over, 1.0);
    if (marked && all(lessThanEqual(raw, vec3(0.0)))) colour = vec4(under, 1.0);
  }
}`;

const FORMATS = {
  "1/1": ["R8UI", "RED_INTEGER", "UNSIGNED_BYTE"],
  "1/2": ["R16UI", "RED_INTEGER", "UNSIGNED_SHORT"],
  "3/1": ["RGB8UI", "RGB_INTEGER", "UNSIGNED_BYTE"],
  "3/2": ["RGB16UI", "RGB_INTEGER", "UNSIGNED_SHORT"],
};

function shader(gl, kind, source) {
  const made = gl.createShader(kind);
  gl.shaderSource(made, source);
  gl.compileShader(made);
  if (!gl.getShaderParameter(made, gl.COMPILE_STATUS)) throw new Error(gl.getShaderInfoLog(made));
  return made;
}

export class WebGlRenderer {
  // Throws where there is no WebGL2.
  constructor(canvas) {
    this.canvas = canvas;
    // Kept after it was shown: the picture is copied to the clipboard.
    const gl = canvas.getContext("webgl2", { alpha: true, antialias: false, preserveDrawingBuffer: true });
    if (!gl) throw new Error("no WebGL2");
    this.gl = gl;
    const program = gl.createProgram();
    gl.attachShader(program, shader(gl, gl.VERTEX_SHADER, VERTICES));
    gl.attachShader(program, shader(gl, gl.FRAGMENT_SHADER, PIXELS));
    gl.linkProgram(program);
    if (!gl.getProgramParameter(program, gl.LINK_STATUS)) throw new Error(gl.getProgramInfoLog(program));
    gl.useProgram(program);
    this.place = (name) => gl.getUniformLocation(program, name);
    this.images = this.texture();
    this.colours = this.texture();
    this.shownColours = null;
    this.shownImage = null;
    gl.pixelStorei(gl.UNPACK_ALIGNMENT, 1);
    gl.uniform1i(this.place("image"), 0);
    gl.uniform1i(this.place("colours"), 1);
    gl.uniform3fv(this.place("under"), UNDEREXPOSED.map((each) => each / 255));
    gl.uniform3fv(this.place("over"), OVEREXPOSED.map((each) => each / 255));
  }

  texture() {
    const { gl } = this;
    const made = gl.createTexture();
    gl.bindTexture(gl.TEXTURE_2D, made);
    for (const filter of [gl.TEXTURE_MIN_FILTER, gl.TEXTURE_MAG_FILTER]) gl.texParameteri(gl.TEXTURE_2D, filter, gl.NEAREST);
    for (const wrap of [gl.TEXTURE_WRAP_S, gl.TEXTURE_WRAP_T]) gl.texParameteri(gl.TEXTURE_2D, wrap, gl.CLAMP_TO_EDGE);
    return made;
  }

  upload(image) {
    const { gl } = this;
    const [internal, format, type] = FORMATS[`${image.components}/${image.bytesPerSample}`];
    gl.activeTexture(gl.TEXTURE0);
    gl.bindTexture(gl.TEXTURE_2D, this.images);
    const key = `${internal} ${image.width} ${image.height}`;
    if (key === this.storage) {
      gl.texSubImage2D(gl.TEXTURE_2D, 0, 0, 0, image.width, image.height, gl[format], gl[type], image.samples);
    } else {
      gl.texImage2D(gl.TEXTURE_2D, 0, gl[internal], image.width, image.height, 0, gl[format], gl[type], image.samples);
      this.storage = key;
    }
    this.shownImage = image;
  }

  chooseColours(coloured) {
    if (this.shownColours === coloured) return;
    const { gl } = this;
    gl.activeTexture(gl.TEXTURE1);
    gl.bindTexture(gl.TEXTURE_2D, this.colours);
    gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, 256, 1, 0, gl.RGBA, gl.UNSIGNED_BYTE, coloured ? COLOURS : GREY);
    this.shownColours = coloured;
  }

  draw(image, geometry, look) {
    const { gl, canvas } = this;
    gl.viewport(0, 0, canvas.width, canvas.height);
    gl.clearColor(0, 0, 0, 0);
    gl.clear(gl.COLOR_BUFFER_BIT);
    if (!image || image.width === 0 || image.height === 0) return;
    if (image !== this.shownImage) this.upload(image);
    this.chooseColours(look.coloured);
    const { region } = image;
    gl.uniform2f(this.place("stage"), canvas.width, canvas.height);
    gl.uniform4f(this.place("region"), region.x, region.y, region.width, region.height);
    gl.uniform1f(this.place("binning"), image.binning);
    gl.uniformMatrix3x2fv(this.place("toImage"), false, geometry.matrix());
    gl.uniform3f(this.place("look"), look.low, look.high, 1 / look.gamma);
    gl.uniform1f(this.place("highest"), image.highest);
    gl.uniform1i(this.place("components"), image.components);
    gl.uniform1i(this.place("smoothed"), geometry.scale * image.binning < 1 || geometry.scale < 1 ? 1 : 0);
    gl.uniform1i(this.place("marked"), look.marked ? 1 : 0);
    gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
  }
}
