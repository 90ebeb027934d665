// Reads a binary message: an image with a header of 64 bytes.
export function readImage(buffer) {
  const header = new DataView(buffer);
  const word = (at) => header.getUint32(at, true);
  if (word(0) !== 0x4d49564f || header.getUint16(4, true) !== 1) throw new Error("not an image message");
  const bytesPerSample = header.getUint8(14);
  const start = header.getUint16(6, true);
  const image = {
    channel: word(8),
    bits: header.getUint16(12, true),
    bytesPerSample,
    components: header.getUint8(15),
    number: header.getFloat64(16, true),
    fullWidth: word(24),
    fullHeight: word(28),
    region: { x: word(32), y: word(36), width: word(40), height: word(44) },
    width: word(48),
    height: word(52),
    binning: word(56),
    view: word(60),
    bytes: buffer.byteLength,
    samples: bytesPerSample === 1 ? new Uint8Array(buffer, start) : new Uint16Array(buffer, start),
  };
  image.highest = 2 ** image.bits - 1;
  return image;
}
