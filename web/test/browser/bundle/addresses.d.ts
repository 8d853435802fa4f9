// What the bundler makes of these imports.
declare module '*url' {
  const address: string;
  export default address;
}
