// The core of Prism alone, without its own grammars.
declare module "prismjs/components/prism-core" {
  export { default } from "prismjs";
}
